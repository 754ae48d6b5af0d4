#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/dos_time.h"
#include "engine/extra_fields.h"
#include "engine/file_access.h"
#include "engine/member_index.h"

namespace ql::zip {

// A member as the directory tells it.
struct Entry {
    std::string name;  // UTF-8, as it stands: nothing says that it is safe
    std::uint64_t size = 0, packedSize = 0;
    std::uint64_t offset = 0;  // of its local header
    std::uint64_t end = 0;     // where the next member or the directory starts
    std::uint64_t utcTime =
        0;  // of the last change, in 100 nanoseconds since 1601; 0 where only `time` is told
    std::uint32_t crc = 0, attributes = 0;
    DosTime time = 0;
    std::uint16_t flags = 0, method = 0;
    bool isFolder = false, needs64 = false;
    std::size_t record = 0, recordSize = 0;  // its part of the directory's bytes

    bool IsEncrypted() const;
};

// The directory of an archive, read whole and held against itself and the file before anything is believed:
// the records fill it exactly, members lie one after the other without overlap, and no size is beyond what
// its packed bytes can give. Memory is bounded by the directory's size, which is limited. Does not change.
class Archive {
  public:
    Archive() = default;

    // Throws kTruncated, kInvalid, kMultiVolume, kNoMemory (a directory beyond kMaxDirectory) or kReadFailed.
    explicit Archive(InputFile& file);

    const std::vector<Entry>& Entries() const { return entries_; }
    const std::string& Comment() const { return comment_; }
    const std::uint8_t* Record(const Entry& entry) const { return &directory_[entry.record]; }
    std::size_t DirectorySize() const { return directory_.size(); }
    // Indexes in the order of the members' places.
    const std::vector<std::size_t>& ByOffset() const { return byOffset_; }
    // Bytes before the first member, such as a program that extracts.
    std::uint64_t PrefixSize() const { return prefixSize_; }
    const MemberIndex& Index() const { return index_; }

    // Whether the file has the same directory still, byte for byte. Throws as the constructor does.
    bool IsIn(InputFile& file) const;

    // Where a member's packed bytes start. Throws kInvalid when its local header tells another story.
    std::uint64_t DataStart(InputFile& file, const Entry& entry) const;

    // Throws kInvalid unless the members of an archive behind other bytes are where it says.
    void RequireMembersInPlace(InputFile& file) const;

  private:
    void ParseDirectory(std::uint64_t count);
    void OrderByOffset();
    void RequireSameName(const Bytes& localExtra, std::uint16_t localFlags, const Entry& entry) const;

    Bytes directory_;
    std::vector<Entry> entries_;
    std::vector<std::size_t> byOffset_;
    MemberIndex index_;
    std::uint64_t directoryStart_ = 0, base_ = 0, prefixSize_ = 0;
    std::string comment_;
};

}  // namespace ql::zip
