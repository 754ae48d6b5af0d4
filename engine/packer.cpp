#include "engine/packer.h"

#include <new>

namespace ql::zip {

void Block::Do(Tool& deflater) noexcept {
    crc = static_cast<std::uint32_t>(crc32(0, Data(), static_cast<uInt>(size)));
    isOutOfMemory = false;
    if (level == 0) return;
    try {
        if (!deflater || deflater->Level() != level) deflater.emplace(level);
        packedSize = deflater->Pack({Data() - windowSize, windowSize, Data(), size, isLast}, packed.data());
    } catch (const std::bad_alloc&) {
        isOutOfMemory = true;
    }
}

}  // namespace ql::zip
