#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "logging/in_order.h"
#include "logging/log_ending.h"
#include "platform/unique_handle.h"
#include "platform/win32.h"

namespace QLLoggerOutputs {

// A log on disk: UTF-8 with a byte-order mark and CR LF line ends, written through a buffer. Others may read
// it but not write.
//
// It writes to the places where the bytes belong, and takes neither locks nor memory: should the system end
// the writing thread anywhere amid or behind an entry, another thread may write that entry again and nothing
// is cut or stands twice.
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
    std::int64_t Size() const noexcept {
        return extents_[now_].position + static_cast<std::int64_t>(extents_[now_].used);
    }
    FILETIME LastWriteTime() const noexcept;  // zero when the system does not tell

    // One entry, of several pieces, under the number of its line; a line that has its entry already is left
    // alone. Where the disk has no room the entry is dropped as a whole and counted, which the next entry
    // begins with.
    enum class Reach { kBuffer, kSystem };
    void Append(std::initializer_list<std::wstring_view> pieces, Reach reach, std::uint32_t line) noexcept;
    bool Flush() noexcept;  // false when the system did not take all; the rest waits
    void Close() noexcept;  // without an entry that was left amid, or what the disk has no room for

  private:
    static constexpr std::size_t kBufferSize = 64 * 1024;

    // Where the buffer's first byte belongs in the file, and how many bytes are in it. What they are changes
    // by one store.
    struct Extent {
        std::int64_t position;
        std::size_t used;
    };

    Extent& Now() noexcept { return extents_[now_]; }
    bool HasEntryOf(std::uint32_t line) noexcept;
    bool IsAmidEntry() const noexcept { return begun_ != completed_; }
    void BeginEntry(std::uint32_t line) noexcept;
    bool EncodeAll(std::initializer_list<std::wstring_view> pieces) noexcept;
    void MoveTo(std::int64_t position) noexcept;
    bool Encode(std::wstring_view text) noexcept;
    bool MakeRoom(std::size_t bytes) noexcept;  // at most for as many as the buffer holds
    void RewindTo(std::int64_t end) noexcept;
    void CutAt(std::int64_t end) noexcept;

    ql::UniqueFileHandle handle_;
    std::array<Extent, 2> extents_ = {};
    ql::InOrder<unsigned> now_ = 0;
    std::int64_t entryStart_;               // where the entry in hand begins
    ql::InOrder<std::uint32_t> begun_ = 0;  // entries; one more than the completed ones amid an entry
    ql::InOrder<std::uint32_t> completed_ = 0;
    ql::InOrder<std::uint32_t> line_ = 0;  // of the last entry
    DWORD thread_ = 0;                     // that wrote it
    std::uint32_t asked_;                  // of its entries the first that may be asked for once more
    std::uint32_t buffered_ = 0;           // entries that may be in the buffer alone
    std::uint32_t lost_ = 0;               // entries that the log has not told of
    std::array<char, kBufferSize> buffer_;
};

}  // namespace QLLoggerOutputs
