#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/archive.h"
#include "engine/deflater.h"
#include "engine/dos_time.h"
#include "engine/file_access.h"
#include "engine/output_buffer.h"

namespace ql::zip {

// A member to be. The name is UTF-8 with slashes; that of a folder ends with one.
struct NewEntry {
    std::string name;
    DosTime time = 0;
    std::uint32_t attributes = 0;
    int level = 0;  // 0 stores
};

// Writes an archive, member after member, in fixed memory but for the directory. Everything throws kTooBig
// where the archive would need 64-bit fields, and kWriteFailed. Not an archive before Finish.
class ArchiveWriter {
  public:
    explicit ArchiveWriter(OutputFile& file);

    // Takes members of another archive as they are, each with what follows it up to the next, and what stands
    // before the first. `kept` has a value for each of the archive's entries. Comes before any Add.
    void Copy(InputFile& from, const Archive& archive, const std::vector<bool>& kept);

    // A member that packing does not make smaller is stored, when it is small enough to be held whole.
    void Add(const NewEntry& entry, InputFile& source, const Progress& progress);

    // Throws kBadComment where the comment is too long or would be taken for the end of the archive.
    void Finish(std::string_view comment);

  private:
    struct Written {
        std::uint64_t offset, size, packedSize;
        std::uint32_t crc;
        std::uint16_t method;
    };
    void CopyRange(InputFile& from, std::uint64_t start, std::uint64_t end);
    void CopyRecord(const std::uint8_t* record, std::size_t size, std::uint64_t offset);
    void Pack(Written& member, InputFile& source, int level, const Progress& progress);
    void StoreInstead(Written& member, std::uint64_t dataStart);
    void WriteLocal(const NewEntry& entry, const Written& member);
    void AddRecord(const NewEntry& entry, const Written& member);
    void CountMember();

    OutputBuffer out_;
    Bytes chunk_;
    std::optional<Deflater> deflater_;
    std::string directory_;
    std::size_t count_ = 0;
};

}  // namespace ql::zip
