#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace ql::zip {

using Bytes = std::vector<std::uint8_t>;

// Told how many bytes are done; throws to cancel.
using Progress = std::function<void(std::uint64_t done)>;

// Bytes that can be read from anywhere. Failures throw kReadFailed.
class InputFile {
  public:
    InputFile() = default;
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    virtual ~InputFile() = default;

    virtual std::uint64_t Size() const = 0;
    // Answers how many bytes were read: fewer than asked for only at the end.
    virtual std::size_t ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) = 0;
};

// Bytes written one after the other, with a way back to correct some. Failures throw kWriteFailed.
class OutputFile {
  public:
    OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    virtual ~OutputFile() = default;

    virtual void WriteAt(std::uint64_t offset, const std::uint8_t* data, std::size_t size) = 0;
};

// A file of up to this size is held whole on its way to the disk or from it: with all that are under way at
// once, about 1 MB.
constexpr std::size_t kMostSmall = 64u << 10;

class MemoryInput final : public InputFile {
  public:
    MemoryInput(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    std::uint64_t Size() const override { return size_; }
    std::size_t ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) override;

  private:
    const std::uint8_t* data_;
    std::size_t size_;
};

// Reads ahead, so that many small reads in a row cost one of the file below.
class WindowedInput final : public InputFile {
  public:
    explicit WindowedInput(InputFile& file) : file_(file) {}
    std::uint64_t Size() const override { return file_.Size(); }
    std::size_t ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) override;

  private:
    bool Holds(std::uint64_t offset, std::size_t size) const;

    InputFile& file_;
    Bytes window_;
    std::uint64_t start_ = 0;
    std::size_t filled_ = 0;
};

// Reads exactly that many bytes; throws kTruncated where the file ends before.
void ReadExactly(InputFile& file, std::uint64_t offset, std::uint8_t* into, std::size_t size);
Bytes ReadBytes(InputFile& file, std::uint64_t offset, std::size_t size);

}  // namespace ql::zip
