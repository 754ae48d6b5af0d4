#pragma once

#include <cstddef>
#include <cstdint>
#include <streambuf>

#include "platform/export.h"

class RWFile;

// The stream that persistent values are written to; a host derives its own or uses one of those below. Values
// go as little-endian bytes. Once a put has failed the stream is no longer good and every later put fails.
class QL_API RWvostream {
  public:
    virtual ~RWvostream();

    // Write bytes, or a value's; good tells whether all were.
    RWvostream& put(const void* bytes, std::size_t count);
    RWvostream& operator<<(std::uint32_t value) { return put(&value, sizeof value); }
    RWvostream& operator<<(double value) { return put(&value, sizeof value); }

    // Hands on what the stream's buffer, file or whatever it writes to still keeps in memory: only then good
    // tells of that, too.
    RWvostream& flush();

    bool good() const noexcept { return good_; }  // until something fails
    void fail() noexcept { good_ = false; }       // for what cannot be written

  private:
    // Writes all the bytes, or answers false.
    virtual bool DoPut(const void* bytes, std::size_t count) = 0;
    // The same of all that was put; true of a stream that keeps nothing.
    virtual bool DoFlush();

    bool good_ = true;
};

// The stream that persistent values are read from. Once a get has failed the stream is no longer good, every
// later get fails, and what a failed get leaves in its out-parameter is not defined.
class QL_API RWvistream {
  public:
    virtual ~RWvistream();

    // Read so many bytes, or a value's; good tells whether all were.
    RWvistream& get(void* bytes, std::size_t count);
    RWvistream& operator>>(std::uint32_t& value) { return get(&value, sizeof value); }
    RWvistream& operator>>(double& value) { return get(&value, sizeof value); }

    bool good() const noexcept { return good_; }  // until something fails
    void fail() noexcept { good_ = false; }       // for what was read but cannot be kept

  private:
    // Reads all the bytes, or answers false.
    virtual bool DoGet(void* bytes, std::size_t count) = 0;

    bool good_ = true;
};

// A stream into a buffer of the standard library, whose exceptions end as failures.
class QL_API RWBufferOstream final : public RWvostream {
  public:
    // Writes into a buffer, which outlives it.
    explicit RWBufferOstream(std::streambuf& buffer) noexcept : buffer_(buffer) {}

  private:
    bool DoPut(const void* bytes, std::size_t count) override;
    bool DoFlush() override;
    std::streambuf& buffer_;
};

// A stream from such a buffer.
class QL_API RWBufferIstream final : public RWvistream {
  public:
    // Reads a buffer, which outlives it.
    explicit RWBufferIstream(std::streambuf& buffer) noexcept : buffer_(buffer) {}

  private:
    bool DoGet(void* bytes, std::size_t count) override;
    std::streambuf& buffer_;
};

// A stream into a file.
class QL_API RWFileOstream final : public RWvostream {
  public:
    // Writes into a file, which outlives it.
    explicit RWFileOstream(RWFile& file) noexcept : file_(file) {}

  private:
    bool DoPut(const void* bytes, std::size_t count) override;
    bool DoFlush() override;
    RWFile& file_;
};

// A stream from a file.
class QL_API RWFileIstream final : public RWvistream {
  public:
    // Reads a file, which outlives it.
    explicit RWFileIstream(RWFile& file) noexcept : file_(file) {}

  private:
    bool DoGet(void* bytes, std::size_t count) override;
    RWFile& file_;
};
