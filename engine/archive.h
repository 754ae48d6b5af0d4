#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/archive_end.h"
#include "engine/dos_time.h"
#include "engine/extra_fields.h"
#include "engine/file_access.h"
#include "engine/member_index.h"

namespace ql::zip {

// A member as the directory tells it.
struct Entry {
    std::string name;  // UTF-8, as it stands: nothing says that it is safe
    std::uint64_t size, packedSize;
    std::uint64_t offset;   // of its local header
    std::uint64_t end;      // where the next member or the directory starts
    std::uint64_t utcTime;  // of the last change, in 100 ns since 1601; 0 where only `time` is told
    std::uint32_t crc, attributes;
    DosTime time;
    std::uint16_t flags, method;
    bool isFolder, needs64;
    std::size_t record, recordSize;  // its part of the directory's bytes

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
    const std::string& Comment() const { return end_.comment; }
    const std::uint8_t* Record(const Entry& entry) const { return &directory_[entry.record]; }
    std::size_t DirectorySize() const { return directory_.size(); }
    // Indexes in the order of the members' places.
    const std::vector<std::size_t>& ByOffset() const { return byOffset_; }
    // Bytes before the first member, such as a program that extracts.
    std::uint64_t PrefixSize() const;
    const MemberIndex& Index() const { return index_; }

    // Whether the file has the same directory still, byte for byte. Throws as the constructor does.
    bool IsIn(InputFile& file) const;

    // Where a member's packed bytes start. Throws kInvalid when its local header tells another story.
    std::uint64_t DataStart(InputFile& file, const Entry& entry) const;

    // Throws kInvalid unless the members of an archive behind other bytes are where it says.
    void RequireMembersInPlace(InputFile& file) const;

  private:
    void ParseDirectory();
    void OrderByOffset();
    void RequireSameName(const Bytes& localExtra, std::uint16_t localFlags, const Entry& entry) const;

    ArchiveEnd end_{};
    Bytes directory_;
    std::vector<Entry> entries_;
    std::vector<std::size_t> byOffset_;
    MemberIndex index_;
};

}  // namespace ql::zip
