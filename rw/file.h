#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>

#include "platform/export.h"

// A binary file for persistent values: bytes, 32-bit counts and doubles, all little-endian. Owns the open
// file and closes it; moves, does not copy. Use one object from one thread at a time.
class QL_API RWFile {
  public:
    // Opens a file with a mode of the C library ("r", "w", "r+" …; binary whether or not it says so). isValid
    // tells whether that worked.
    explicit RWFile(const wchar_t* path, const wchar_t* mode = L"r+b");

    // Whether the file is open.
    bool isValid() const noexcept { return file_ != nullptr; }

    // Each moves all the bytes asked for and answers true, or answers false; what a failed read leaves in its
    // out-parameter is not defined. Reads and writes may follow each other in any order.
    bool Read(void* bytes, std::size_t count);
    bool Read(std::uint32_t& value) { return Read(&value, sizeof value); }
    bool Read(double& value) { return Read(&value, sizeof value); }
    bool Write(const void* bytes, std::size_t count);
    bool Write(std::uint32_t value) { return Write(&value, sizeof value); }
    bool Write(double value) { return Write(&value, sizeof value); }

    // Whether all that was written has reached the system. Until then what Write took may wait in memory, and
    // closing tells no longer when the disk has no room for it.
    bool Flush();

    bool SeekTo(long offset);  // bytes from the start

  private:
    enum class Direction { None, Read, Write };
    bool TurnTo(Direction direction);

    struct Closer {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> file_;
    Direction last_ = Direction::None;
};
