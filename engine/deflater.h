#pragma once

#include <cstddef>
#include <cstdint>

#include <zlib.h>

namespace ql::zip {

// A part of a member's contents that is packed by itself, with what comes before it in mind.
struct PlainBlock {
    const std::uint8_t* window;  // what comes before, as far as packing looks back
    std::size_t windowSize;
    const std::uint8_t* data;
    std::size_t size;
    bool isLast;  // ends the stream; otherwise it ends at a byte, so that the next one can follow
};

// A deflate stream that is used again and again.
class Deflater {
  public:
    explicit Deflater(int level);
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    int Level() const { return level_; }

    // Answers how many bytes came out; there must be room for MostPacked. Throws std::bad_alloc.
    std::size_t Pack(const PlainBlock& block, std::uint8_t* out);

    static constexpr std::size_t kWindow = std::size_t{1} << MAX_WBITS;
    static constexpr std::size_t MostPacked(std::size_t size) { return size + size / 1000 + 128; }

  private:
    int level_;
    z_stream stream_{};
};

}  // namespace ql::zip
