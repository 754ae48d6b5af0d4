#include "engine/deflater.h"

#include <new>

namespace ql::zip {
namespace {
constexpr int kMemoryLevel = 8;
}  // namespace

Deflater::Deflater(int level) : level_(level) {
    if (deflateInit2(&stream_, level, Z_DEFLATED, -MAX_WBITS, kMemoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
}

Deflater::~Deflater() {
    deflateEnd(&stream_);
}

std::size_t Deflater::Pack(const PlainBlock& block, std::uint8_t* out) {
    deflateReset(&stream_);
    deflateSetDictionary(&stream_, block.window, static_cast<uInt>(block.windowSize));
    stream_.next_in = const_cast<Bytef*>(block.data);
    stream_.avail_in = static_cast<uInt>(block.size);
    stream_.next_out = out;
    stream_.avail_out = static_cast<uInt>(MostPacked(block.size));
    deflate(&stream_, block.isLast ? Z_FINISH : Z_SYNC_FLUSH);
    return MostPacked(block.size) - stream_.avail_out;
}

}  // namespace ql::zip
