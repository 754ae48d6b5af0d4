#include "engine/deflater.h"

#include <new>

namespace ql::zip {
namespace {
constexpr int kMemoryLevel = 8;
constexpr std::size_t kLeastRoom = 32u << 10;
}  // namespace

Deflater::Deflater(int level) : level_(level) {
    if (deflateInit2(&stream_, level, Z_DEFLATED, -MAX_WBITS, kMemoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
}

Deflater::~Deflater() {
    deflateEnd(&stream_);
}

void Deflater::Reset() {
    deflateReset(&stream_);
}

void Deflater::Put(const std::uint8_t* data, std::size_t size, bool last, OutputBuffer& out) {
    stream_.next_in = const_cast<Bytef*>(data);
    stream_.avail_in = static_cast<uInt>(size);
    do {
        out.Reserve(kLeastRoom);
        const std::size_t room = out.RoomSize();
        stream_.next_out = out.Room();
        stream_.avail_out = static_cast<uInt>(room);
        deflate(&stream_, last ? Z_FINISH : Z_NO_FLUSH);
        out.Advance(room - stream_.avail_out);
    } while (stream_.avail_out == 0);
}

}  // namespace ql::zip
