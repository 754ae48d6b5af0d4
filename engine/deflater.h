#pragma once

#include <zlib.h>

#include "engine/output_buffer.h"

namespace ql::zip {

// A deflate stream that is used again and again.
class Deflater {
  public:
    explicit Deflater(int level);
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    int Level() const { return level_; }
    void Reset();
    void Put(const std::uint8_t* data, std::size_t size, bool last, OutputBuffer& out);

  private:
    int level_;
    z_stream stream_{};
};

}  // namespace ql::zip
