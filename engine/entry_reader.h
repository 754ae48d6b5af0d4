#pragma once

#include <functional>

#include <zlib.h>

#include "engine/archive.h"
#include "engine/file_access.h"

namespace ql::zip {

// Takes the bytes of a member, a part at a time; what it throws ends the reading.
using Sink = std::function<void(const std::uint8_t* data, std::size_t size)>;

// Unpacks members, one after the other, in fixed memory. Both are the caller's and outlive the reader.
class EntryReader {
  public:
    EntryReader(InputFile& file, const Archive& archive);
    ~EntryReader();
    EntryReader(const EntryReader&) = delete;
    EntryReader& operator=(const EntryReader&) = delete;

    // Gives at most the size that the directory tells, and succeeds only when that is what comes, with the
    // right check sum. Throws kEncrypted, kUnknownMethod, kInvalid, kTruncated, kBadCrc, kReadFailed.
    void Read(const Entry& entry, const Sink& sink);

  private:
    void Copy(std::uint64_t start, const Entry& entry, const Sink& sink);
    void Inflate(std::uint64_t start, const Entry& entry, const Sink& sink);
    std::size_t Fill(std::uint64_t start, std::uint64_t count);
    void Give(const std::uint8_t* data, std::size_t size, const Sink& sink);

    InputFile& file_;
    const Archive& archive_;
    z_stream stream_{};
    Bytes packed_, plain_;
    std::uint64_t given_ = 0;
    uLong crc_ = 0;
};

}  // namespace ql::zip
