#include "engine/entry_reader.h"

#include <algorithm>
#include <new>

#include "engine/format.h"
#include "engine/result.h"

namespace ql::zip {
namespace {
constexpr std::size_t kChunk = 128u << 10;
}

EntryReader::EntryReader(InputFile& file, const Archive& archive)
    : file_(file), archive_(archive), packed_(kChunk), plain_(kChunk) {
    if (inflateInit2(&stream_, -MAX_WBITS) != Z_OK) throw std::bad_alloc();
}

EntryReader::~EntryReader() {
    inflateEnd(&stream_);
}

void EntryReader::Read(const Entry& entry, const Sink& sink) {
    Require(!entry.IsEncrypted(), Result::kEncrypted);
    Require(entry.method == kStored || entry.method == kDeflated, Result::kUnknownMethod);
    given_ = 0;
    crc_ = 0;
    const std::uint64_t start = archive_.DataStart(file_, entry);
    if (entry.method == kStored) {
        Copy(start, entry, sink);
    } else {
        Inflate(start, entry, sink);
    }
    Require(given_ == entry.size, Result::kInvalid);
    Require(crc_ == entry.crc, Result::kBadCrc);
}

std::size_t EntryReader::Fill(std::uint64_t start, std::uint64_t count) {
    const std::size_t size = static_cast<std::size_t>(std::min<std::uint64_t>(count, kChunk));
    ReadExactly(file_, start, packed_.data(), size);
    return size;
}

void EntryReader::Give(const std::uint8_t* data, std::size_t size, const Sink& sink) {
    if (size == 0) return;
    crc_ = crc32(crc_, data, static_cast<uInt>(size));
    given_ += size;
    sink(data, size);
}

void EntryReader::Copy(std::uint64_t start, const Entry& entry, const Sink& sink) {
    while (given_ < entry.packedSize)
        Give(packed_.data(), Fill(start + given_, entry.packedSize - given_), sink);
}

void EntryReader::Inflate(std::uint64_t start, const Entry& entry, const Sink& sink) {
    inflateReset(&stream_);
    stream_.avail_in = 0;
    std::uint64_t taken = 0;
    for (int state = Z_OK; state != Z_STREAM_END;) {
        if (stream_.avail_in == 0) {
            stream_.avail_in = static_cast<uInt>(Fill(start + taken, entry.packedSize - taken));
            stream_.next_in = packed_.data();
            taken += stream_.avail_in;
        }
        stream_.next_out = plain_.data();
        stream_.avail_out = static_cast<uInt>(kChunk);
        state = inflate(&stream_, Z_NO_FLUSH);
        if (state == Z_MEM_ERROR) throw std::bad_alloc();
        // No step forward: the packed bytes end before their stream does.
        Require(state == Z_OK || state == Z_STREAM_END, Result::kInvalid);
        const std::size_t size = kChunk - stream_.avail_out;
        Require(size <= entry.size - given_, Result::kInvalid);
        Give(plain_.data(), size, sink);
    }
    Require(taken == entry.packedSize && stream_.avail_in == 0, Result::kInvalid);
}

}  // namespace ql::zip
