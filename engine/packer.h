#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "engine/deflater.h"
#include "engine/file_access.h"
#include "engine/ordered_work.h"

namespace ql::zip {

// A part of a member on its way through the packer.
struct Block {
    using Tool = std::optional<Deflater>;
    void Do(Tool& deflater) noexcept;

    static constexpr std::size_t kSize = 256u << 10;

    std::uint8_t* Data() { return bytes.data() + Deflater::kWindow; }

    // Filled by who reads.
    int level;  // 0 leaves the bytes as they are
    bool isFirst, isLast;
    std::size_t windowSize, size;
    Bytes bytes = Bytes(Deflater::kWindow + kSize);  // the window ends where the data begin

    // What comes out.
    Bytes packed = Bytes(Deflater::MostPacked(kSize));
    std::size_t packedSize;  // where the level is not 0
    std::uint32_t crc;
    bool isOutOfMemory;
};

// Packs blocks on all cores. They have one size and know the window before them, so that the bytes that come
// out do not depend on how many cores there are.
using Packer = OrderedWork<Block>;

}  // namespace ql::zip
