#pragma once

#include <algorithm>

#include "zip/engine/file_access.h"

// An archive that is written to memory.
class MemoryOutput final : public ql::zip::OutputFile {
  public:
    void WriteAt(std::uint64_t offset, const std::uint8_t* data, std::size_t size) override {
        bytes.resize(std::max(bytes.size(), static_cast<std::size_t>(offset) + size));
        std::copy_n(data, size, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    }
    ql::zip::Bytes bytes;
};
