#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/dos_time.h"
#include "engine/file_access.h"

namespace ql::zip {

// A member as the directory tells it.
struct Entry {
    std::string name;  // UTF-8, as it stands: nothing says that it is safe
    std::uint64_t size = 0, packedSize = 0;
    std::uint64_t offset = 0;  // of its local header
    std::uint64_t end = 0;     // where the next member or the directory starts
    std::uint32_t crc = 0, attributes = 0;
    DosTime time = 0;
    std::uint16_t flags = 0, method = 0;
    bool needs64 = false;
    std::size_t record = 0, recordSize = 0;  // its part of the directory's bytes

    bool IsFolder() const { return !name.empty() && (name.back() == '/' || name.back() == '\\'); }
    bool IsEncrypted() const;
};

// The directory of an archive, read whole and held against itself and the file before anything is believed:
// the records fill it exactly, members lie one after the other without overlap, and no size is beyond what
// its packed bytes can give. Memory is bounded by the directory's size, which is limited.
class Archive {
  public:
    Archive() = default;

    // Throws kTruncated, kInvalid, kMultiVolume, kNoMemory (a directory beyond 64 MB) or kReadFailed.
    explicit Archive(InputFile& file);

    const std::vector<Entry>& Entries() const { return entries_; }
    const std::string& Comment() const { return comment_; }
    const std::uint8_t* Record(const Entry& entry) const { return &directory_[entry.record]; }
    // Indexes in the order of the members' places.
    const std::vector<std::size_t>& ByOffset() const { return byOffset_; }
    // Bytes before the first member, such as a program that extracts.
    std::uint64_t PrefixSize() const { return prefixSize_; }

    // Where a member's packed bytes start. Throws kInvalid when its local header tells another story.
    std::uint64_t DataStart(InputFile& file, const Entry& entry) const;

  private:
    void ParseDirectory(std::uint64_t count, std::uint64_t base);
    void OrderByOffset(std::uint64_t directoryStart);

    Bytes directory_;
    std::vector<Entry> entries_;
    std::vector<std::size_t> byOffset_;
    std::uint64_t prefixSize_ = 0;
    std::string comment_;
};

}  // namespace ql::zip
