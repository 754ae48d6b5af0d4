// Reads any bytes as an archive. What opens must keep its promises: members apart from each other, nothing
// more than the told size, safe names below their folder; and it can be written anew and read again.
#include "engine/entry_name.h"
#include "engine/result.h"
#include "tests/fuzz/fuzz.h"
#include "tests/zip/members.h"

namespace {

using namespace ql::zip;

constexpr std::uint64_t kEnough = 8u << 20;

void ReadMember(EntryReader& reader, const Entry& entry) {
    std::uint64_t given = 0;
    const Result result = ResultOf([&] {
        reader.Read(entry, [&](const std::uint8_t*, std::size_t size) {
            given += size;
            Expect(given <= entry.size);
            Require(given <= kEnough, Result::kCancelled);
        });
    });
    Expect(result == Result::kOk ? given == entry.size : result != Result::kNoMemory);
}

void CheckName(const std::string& name) {
    if (!IsSafeEntryName(name)) return;
    const std::string slashed = WithSlashes(name);
    Expect(slashed.front() != '/' && slashed.find(':') == std::string::npos);
    Expect(("/" + slashed + "/").find("/../") == std::string::npos &&
           slashed.find("//") == std::string::npos);
}

void WriteAnew(InputFile& file, const Archive& archive) {
    MemoryOutput output;
    ArchiveWriter writer(output);
    writer.Copy(file, archive, std::vector<bool>(archive.Entries().size(), true));
    writer.Finish(archive.Comment());
    const Result result = ResultOf([&] {
        const MemoryArchive again(output.bytes);
        Expect(again.archive.Entries().size() == archive.Entries().size());
        Expect(again.archive.Comment() == archive.Comment());
    });
    Expect(result == Result::kOk);
}

void Read(Input input) {
    MemoryInput memory(input.data(), input.size());
    WindowedInput file(memory);
    const Archive archive(file);
    EntryReader reader(file, archive);
    std::uint64_t packed = 0;
    for (const Entry& entry : archive.Entries()) {
        packed += entry.packedSize;
        CheckName(entry.name);
        ReadMember(reader, entry);
    }
    Expect(packed <= input.size());
    WriteAnew(file, archive);
}

}  // namespace

FUZZER(ZipReader, "", "PK\1\2", "PK\3\4", "PK\5\6") {
    Expect(ResultOf([&] { Read(input); }) != Result::kNoMemory);
}
