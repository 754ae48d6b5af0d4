// Writes members that the input describes, leaves some out in a second archive with others added, reads all
// of them and compares. A byte each: name, level, repetitions of the contents, its length; then the contents.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/zip/memory_output.h"
#include "zip/engine/archive.h"
#include "zip/engine/archive_writer.h"
#include "zip/engine/entry_reader.h"

namespace {

using namespace ql::zip;

void Expect(bool holds) {
    if (!holds) std::abort();
}

struct Member {
    NewEntry entry;
    Bytes content;
};

std::vector<Member> MembersOf(const std::uint8_t* data, std::size_t size) {
    std::vector<Member> members;
    while (size >= 4 && members.size() < 64) {
        Member member;
        member.entry.name = "n" + std::to_string(data[0]) + (data[0] & 1 ? "\u00e4\u4e00" : "") + "/x";
        member.entry.level = data[1] % 10;
        member.entry.time = data[0] * 0x01010101u;
        member.entry.attributes = data[1];
        const std::size_t length = std::min<std::size_t>(data[3], size - 4);
        for (int i = 0; i <= data[2] * data[2] / 16; ++i)
            member.content.insert(member.content.end(), data + 4, data + 4 + length);
        data += 4 + length;
        size -= 4 + length;
        members.push_back(std::move(member));
    }
    return members;
}

void Add(ArchiveWriter& writer, const Member& member) {
    MemoryInput source(member.content.data(), member.content.size());
    std::uint64_t seen = 0;
    writer.Add(member.entry, source, [&](std::uint64_t done) { seen = done; });
    Expect(seen == member.content.size());
}

void ExpectMembers(const Bytes& bytes, const std::vector<const Member*>& members,
                   const std::string& comment) {
    MemoryInput memory(bytes.data(), bytes.size());
    WindowedInput file(memory);
    const Archive archive(file);
    EntryReader reader(file, archive);
    Expect(archive.Comment() == comment && archive.Entries().size() == members.size());
    for (std::size_t i = 0; i < members.size(); ++i) {
        const Entry& entry = archive.Entries()[i];
        Bytes content;
        reader.Read(entry, [&](const std::uint8_t* part, std::size_t size) {
            content.insert(content.end(), part, part + size);
        });
        Expect(content == members[i]->content && entry.name == members[i]->entry.name &&
               entry.time == members[i]->entry.time && entry.attributes == members[i]->entry.attributes);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<Member> members = MembersOf(data, size);
    std::vector<const Member*> expected;
    MemoryOutput first;
    ArchiveWriter writer(first);
    for (const Member& member : members) {
        Add(writer, member);
        expected.push_back(&member);
    }
    writer.Finish("one");
    ExpectMembers(first.bytes, expected, "one");

    MemoryInput file(first.bytes.data(), first.bytes.size());
    const Archive archive(file);
    std::vector<bool> kept;
    expected.clear();
    for (const Member& member : members) {
        kept.push_back(member.entry.attributes % 3 != 0);
        if (kept.back()) expected.push_back(&member);
    }
    MemoryOutput second;
    ArchiveWriter again(second);
    again.Copy(file, archive, kept);
    for (const Member& member : members) {
        Add(again, member);
        expected.push_back(&member);
    }
    again.Finish("");
    ExpectMembers(second.bytes, expected, "");
    return 0;
}
