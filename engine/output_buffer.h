#pragma once

#include <string_view>

#include "engine/file_access.h"

namespace ql::zip {

// Gathers what is written to a file, and lets the latest of it be taken back or corrected without a write.
class OutputBuffer {
  public:
    OutputBuffer(OutputFile& file, std::size_t capacity) : file_(file), buffer_(capacity) {}

    std::uint64_t Position() const { return start_ + used_; }
    void Append(const std::uint8_t* data, std::size_t size);
    void Append(std::string_view bytes);

    // Room of at least that many bytes, to be written to and then counted by Advance. What was appended since
    // a Reserve stays in the buffer as long as it fits what was reserved.
    void Reserve(std::size_t size);
    std::uint8_t* Room() { return buffer_.data() + used_; }
    std::size_t RoomSize() const { return buffer_.size() - used_; }
    void Advance(std::size_t size) { used_ += size; }

    void Correct(std::uint64_t position, const std::uint8_t* data, std::size_t size);
    // Back to a position that is still in the buffer.
    void Rewind(std::uint64_t position) { used_ = static_cast<std::size_t>(position - start_); }
    void Flush();

  private:
    OutputFile& file_;
    Bytes buffer_;
    std::uint64_t start_ = 0;
    std::size_t used_ = 0;
};

}  // namespace ql::zip
