// Writes members that the input describes, leaves some out in a second archive with others added, reads all
// of them and compares. A byte each: name, level, repetitions of the contents, its length; then the contents.
#include "tests/fuzz/fuzz.h"
#include "tests/zip/members.h"

namespace {

using namespace ql::zip;

std::vector<Member> MembersOf(Input input) {
    std::vector<Member> members;
    while (input.size() >= 4 && members.size() < 64) {
        const unsigned name = TakeByte(input), level = TakeByte(input), times = TakeByte(input);
        const Input content = Take(input, TakeByte(input));
        members.push_back({"n" + std::to_string(name) + (name & 1 ? "\u00e4\u4e00" : "") + "/x", "", level,
                           static_cast<int>(level % 10), name * 0x01010101u});
        for (unsigned i = 0; i <= times * times / 16; ++i)
            members.back().content.append(content.begin(), content.end());
    }
    return members;
}

void ExpectMembers(const Bytes& bytes, const std::vector<Member>& members, const std::string& comment) {
    MemoryArchive read(bytes);
    const std::vector<Entry>& entries = read.archive.Entries();
    Expect(read.archive.Comment() == comment && entries.size() == members.size());
    for (std::size_t i = 0; i < members.size(); ++i) {
        const Member& member = members[i];
        Expect(read.Content(i) == member.content && entries[i].name == member.name &&
               entries[i].time == member.time && entries[i].attributes == member.attributes);
    }
}

}  // namespace

FUZZER(ZipRoundTrip, "", "\x10\x6\x1\x20") {
    const std::vector<Member> members = MembersOf(input);
    std::vector<Member> kept;
    std::vector<bool> isKept;
    for (const Member& member : members) {
        isKept.push_back(member.attributes % 3 != 0);
        if (isKept.back()) kept.push_back(member);
    }
    MemoryOutput first, second;
    Write(first, members, "one");
    ExpectMembers(first.bytes, members, "one");

    MemoryArchive former(first.bytes);
    ArchiveWriter writer(second);
    writer.Copy(former.file, former.archive, isKept);
    for (const Member& member : members) Expect(Add(writer, member) == member.content.size());
    writer.Finish("");
    kept.insert(kept.end(), members.begin(), members.end());
    ExpectMembers(second.bytes, kept, "");
}
