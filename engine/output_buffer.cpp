#include "engine/output_buffer.h"

#include <algorithm>

namespace ql::zip {

void OutputBuffer::Append(const std::uint8_t* data, std::size_t size) {
    while (size > 0) {
        Reserve(1);
        const std::size_t count = std::min(size, RoomSize());
        std::copy_n(data, count, Room());
        Advance(count);
        data += count;
        size -= count;
    }
}

void OutputBuffer::Append(std::string_view bytes) {
    Append(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

void OutputBuffer::Reserve(std::size_t size) {
    if (RoomSize() < size) Flush();
}

void OutputBuffer::Correct(std::uint64_t position, const std::uint8_t* data, std::size_t size) {
    if (position >= start_) {
        std::copy_n(data, size, buffer_.data() + static_cast<std::size_t>(position - start_));
        return;
    }
    Flush();
    file_.WriteAt(position, data, size);
}

void OutputBuffer::Flush() {
    if (used_ == 0) return;
    file_.WriteAt(start_, buffer_.data(), used_);
    start_ += used_;
    used_ = 0;
}

}  // namespace ql::zip
