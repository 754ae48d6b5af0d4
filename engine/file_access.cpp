#include "engine/file_access.h"

#include <algorithm>
#include <cstring>

#include "engine/result.h"

namespace ql::zip {
namespace {
constexpr std::size_t kWindow = 256u << 10;
}

std::size_t MemoryInput::ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) {
    if (offset >= size_) return 0;
    const std::size_t at = static_cast<std::size_t>(offset), count = std::min(size, size_ - at);
    std::copy_n(data_ + at, count, into);
    return count;
}

bool WindowedInput::Holds(std::uint64_t offset, std::size_t size) const {
    return offset >= start_ && offset - start_ <= filled_ && size <= filled_ - (offset - start_);
}

std::size_t WindowedInput::ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) {
    if (size >= kWindow) return file_.ReadAt(offset, into, size);
    if (!Holds(offset, size)) {
        window_.resize(kWindow);
        filled_ = 0;
        start_ = offset;
        filled_ = file_.ReadAt(offset, window_.data(), kWindow);
    }
    const std::size_t at = static_cast<std::size_t>(offset - start_), count = std::min(size, filled_ - at);
    std::copy_n(window_.data() + at, count, into);
    return count;
}

void ReadExactly(InputFile& file, std::uint64_t offset, std::uint8_t* into, std::size_t size) {
    Require(file.ReadAt(offset, into, size) == size, Result::kTruncated);
}

Bytes ReadBytes(InputFile& file, std::uint64_t offset, std::size_t size) {
    Bytes bytes(size);
    ReadExactly(file, offset, bytes.data(), size);
    return bytes;
}

}  // namespace ql::zip
