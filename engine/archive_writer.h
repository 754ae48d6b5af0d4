#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/archive.h"
#include "engine/dos_time.h"
#include "engine/file_access.h"
#include "engine/format.h"
#include "engine/output_buffer.h"
#include "engine/packer.h"

namespace ql::zip {

// A member to be. The name is UTF-8 with slashes; that of a folder ends with one.
struct NewEntry {
    std::string name;
    DosTime time;
    std::uint32_t attributes;
    int level;  // 0 stores
};

// Writes an archive, member after member, in bounded memory but for the directory; with 64-bit fields where
// it needs them. Everything throws kWriteFailed, and kTooBig where the directory would be larger than is
// read. Not an archive before Finish.
class ArchiveWriter {
  public:
    explicit ArchiveWriter(OutputFile& file);

    // Takes members of another archive as they are, each with what follows it up to the next, and what stands
    // before the first. `kept` has a value for each of the archive's entries. Comes before any Add.
    void Copy(InputFile& from, const Archive& archive, const std::vector<bool>& kept);

    // A member that packing does not make smaller is stored, when it is small enough to be held whole. The
    // last of the contents may still be on their way when it returns. What the source or the progress throws
    // leaves the members before as they are, and nothing of this one.
    void Add(const NewEntry& entry, InputFile& source, const Progress& progress);

    // Throws kBadComment where the comment is too long or would be taken for the end of the archive. Answers
    // the archive's size.
    std::uint64_t Finish(std::string_view comment);

  private:
    struct Member {
        NewEntry entry;
        bool isWide;  // the local header has room for sizes of 64 bits
        bool isBegun = false;
        std::uint64_t offset = 0, size = 0, packedSize = 0;
        std::uint32_t crc = 0;
        std::uint16_t method = kStored;
    };
    void CopyRange(InputFile& from, std::uint64_t start, std::uint64_t end);
    void CopyRecord(const Archive& archive, const Entry& entry, std::uint64_t offset);
    void CopyRecordWith64(Field old, const Entry& entry, std::uint64_t offset);
    void ReadBlocks(const NewEntry& entry, InputFile& source, const Progress& progress);
    void WriteBlocks();
    void WriteNextBlock();
    void Begin(Member& member, const Block& block);
    void End(const Member& member);
    void Abandon();
    void WriteLocal(const Member& member);
    void AddRecord(const Member& member);
    void FinishWith64(std::uint64_t directoryStart);

    OutputBuffer out_;
    Packer packer_;
    std::deque<Member> members_;  // that are on their way; the first may be written in part
    Bytes chunk_, window_;
    std::string directory_;
    std::uint64_t count_ = 0;
};

}  // namespace ql::zip
