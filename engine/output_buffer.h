#pragma once

#include <string_view>

#include "engine/file_access.h"

namespace ql::zip {

// Gathers what is written to a file, and lets some of it be taken back or corrected.
class OutputBuffer {
  public:
    OutputBuffer(OutputFile& file, std::size_t capacity) : file_(file), capacity_(capacity) {}

    std::uint64_t Position() const { return start_ + buffer_.size(); }
    void Append(const std::uint8_t* data, std::size_t size);
    void Append(std::string_view bytes);
    void Correct(std::uint64_t position, const std::uint8_t* data, std::size_t size);
    // Back to a position before: what follows is written over what was there. The file may already be longer.
    void Rewind(std::uint64_t position);
    void Flush();

  private:
    OutputFile& file_;
    const std::size_t capacity_;
    Bytes buffer_;
    std::uint64_t start_ = 0;
};

}  // namespace ql::zip
