// Reads any bytes as an archive. What opens must keep its promises: members apart from each other, nothing
// more than the told size, safe names below their folder; and it can be written anew and read again.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/zip/memory_output.h"
#include "zip/engine/archive.h"
#include "zip/engine/archive_writer.h"
#include "zip/engine/entry_name.h"
#include "zip/engine/entry_reader.h"
#include "zip/engine/result.h"

namespace {

using namespace ql::zip;

constexpr std::uint64_t kEnough = 8u << 20;

void Expect(bool holds) {
    if (!holds) std::abort();
}

void ReadMember(EntryReader& reader, const Entry& entry) {
    std::uint64_t given = 0;
    try {
        reader.Read(entry, [&](const std::uint8_t*, std::size_t size) {
            given += size;
            Expect(given <= entry.size);
            if (given > kEnough) throw Failure{Result::kCancelled};
        });
        Expect(given == entry.size);
    } catch (const Failure&) {
    }
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
    try {
        writer.Copy(file, archive, std::vector<bool>(archive.Entries().size(), true));
        writer.Finish(archive.Comment());
    } catch (const Failure&) {
        return;
    }
    MemoryInput copy(output.bytes.data(), output.bytes.size());
    const Archive again(copy);
    Expect(again.Entries().size() == archive.Entries().size() && again.Comment() == archive.Comment());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryInput memory(data, size);
    WindowedInput file(memory);
    try {
        const Archive archive(file);
        EntryReader reader(file, archive);
        std::uint64_t packed = 0;
        for (const Entry& entry : archive.Entries()) {
            packed += entry.packedSize;
            CheckName(entry.name);
            ReadMember(reader, entry);
        }
        Expect(packed <= size);
        WriteAnew(file, archive);
    } catch (const Failure& failure) {
        Expect(failure.result != Result::kOk);
    }
    return 0;
}
