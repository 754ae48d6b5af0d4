#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "platform/unique_handle.h"
#include "platform/win32.h"

namespace QLLoggerOutputs {

// A log on disk: UTF-8 with a byte-order mark and CR LF line ends, written through a buffer. Others may read
// it but not write.
//
// It writes to the places where the bytes belong, and takes neither locks nor memory: should the system end
// the writing thread amid an entry, another thread may write that entry again and nothing is cut or stands
// twice.
class LogFile {
  public:
    enum class Start { kEmpty, kContinue };

    LogFile() noexcept = default;
    ~LogFile() { Close(); }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    // A file that cannot be opened, or whose name is null, is not open.
    void Open(const wchar_t* path, Start start) noexcept;
    bool IsOpen() const noexcept { return static_cast<bool>(handle_); }
    std::int64_t Size() const noexcept { return position_ + static_cast<std::int64_t>(used_); }

    // One entry, of several pieces. It is dropped as a whole where the disk has no room for it.
    enum class Reach { kBuffer, kSystem };
    void Append(std::initializer_list<std::wstring_view> pieces, Reach reach) noexcept;
    bool Flush() noexcept;  // false when the system did not take all; the rest waits
    void Close() noexcept;  // without an entry that was left amid, or what the disk has no room for

  private:
    static constexpr std::size_t kBufferSize = 64 * 1024;

    void BeginEntry() noexcept;
    bool Encode(std::wstring_view text) noexcept;
    bool MakeRoom(std::size_t bytes) noexcept;
    void RewindTo(std::int64_t end) noexcept;
    void CutAt(std::int64_t end) noexcept;

    ql::UniqueFileHandle handle_;
    std::int64_t position_ = 0;    // of the buffer's first byte in the file
    std::size_t used_ = 0;         // bytes in the buffer
    std::int64_t entryStart_ = 0;  // where the entry in hand begins
    bool inEntry_ = false;
    std::array<char, kBufferSize> buffer_;
};

}  // namespace QLLoggerOutputs
