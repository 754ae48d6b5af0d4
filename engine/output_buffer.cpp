#include "engine/output_buffer.h"

#include <algorithm>

namespace ql::zip {

void OutputBuffer::Append(const std::uint8_t* data, std::size_t size) {
    while (size > 0) {
        if (buffer_.size() == capacity_) Flush();
        const std::size_t count = std::min(size, capacity_ - buffer_.size());
        buffer_.insert(buffer_.end(), data, data + count);
        data += count;
        size -= count;
    }
}

void OutputBuffer::Append(std::string_view bytes) {
    Append(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

void OutputBuffer::Correct(std::uint64_t position, const std::uint8_t* data, std::size_t size) {
    if (position < start_) {
        Flush();
        return file_.WriteAt(position, data, size);
    }
    std::copy_n(data, size, buffer_.begin() + static_cast<std::ptrdiff_t>(position - start_));
}

void OutputBuffer::Rewind(std::uint64_t position) {
    buffer_.resize(position < start_ ? 0 : static_cast<std::size_t>(position - start_));
    start_ = std::min(start_, position);
}

void OutputBuffer::Flush() {
    if (buffer_.empty()) return;
    file_.WriteAt(start_, buffer_.data(), buffer_.size());
    start_ += buffer_.size();
    buffer_.clear();
}

}  // namespace ql::zip
