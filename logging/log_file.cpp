#include "logging/log_file.h"

#include <algorithm>
#include <utility>

#include "logging/lost_lines.h"
#include "platform/file_position.h"
#include "text/unicode.h"

namespace QLLoggerOutputs {

namespace {

constexpr std::wstring_view kByteOrderMark = L"\xFEFF";
constexpr std::size_t kLongestUnit = 3;
constexpr std::wstring_view kDiskFull = L"the disk was full";

// Converts a text for which there is room.
char* Put(char* out, std::wstring_view text) noexcept {
    while (!text.empty()) {
        const wchar_t unit = text[0];
        if (unit < 0x80) {
            if (unit == L'\n') *out++ = '\r';
            *out++ = static_cast<char>(unit);
            text.remove_prefix(1);
            continue;
        }
        const char32_t character = ql::TakeCharacter(text);
        out = ql::PutUtf8(out, ql::IsSurrogate(character) ? ql::kReplacementCharacter : character);
    }
    return out;
}

}  // namespace

void LogFile::Open(const wchar_t* path, Start start) noexcept {
    Close();
    if (!path) return;
    const DWORD creation = start == Start::kEmpty ? CREATE_ALWAYS : OPEN_ALWAYS;
    ql::UniqueFileHandle opened(::CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, creation,
                                              FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size = {};
    if (!opened || !::GetFileSizeEx(opened.get(), &size)) return;
    MoveTo(size.QuadPart);
    handle_ = std::move(opened);
    if (size.QuadPart > 0) return;
    EncodeAll({kByteOrderMark});
    Flush();
}

FILETIME LogFile::LastWriteTime() const noexcept {
    FILETIME time = {};
    if (IsOpen() && !::GetFileTime(handle_.get(), nullptr, nullptr, &time)) return {};
    return time;
}

void LogFile::Append(std::initializer_list<std::wstring_view> pieces, Reach reach,
                     std::uint32_t line) noexcept {
    if (!IsOpen() || HasEntryOf(line)) return;
    BeginEntry(line);
    const std::uint32_t untold = lost_;
    const bool fits =
        (untold == 0 || EncodeAll({ql::LostLinesText(untold, kDiskFull).Text()})) && EncodeAll(pieces);
    if (fits) {
        ++buffered_;
    } else {
        RewindTo(entryStart_);
    }
    if (reach == Reach::kSystem) Flush();
    completed_ = begun_;
    if (fits) {
        lost_ -= untold;
    } else {
        ++lost_;
        ql::CountLostLines(ql::LostTo::kDisk, 1);
    }
}

// Whether the thread that goes on with the writer's work asks for an entry that the writer had completed.
bool LogFile::HasEntryOf(std::uint32_t line) noexcept {
    if (line == 0 || line != line_ || thread_ == ::GetCurrentThreadId() || asked_ == completed_) return false;
    ++asked_;
    return true;
}

void LogFile::BeginEntry(std::uint32_t line) noexcept {
    if (IsAmidEntry()) RewindTo(entryStart_);
    begun_ = completed_;
    if (line != line_ || thread_ != ::GetCurrentThreadId()) {
        asked_ = completed_;
        thread_ = ::GetCurrentThreadId();
        line_ = line;
    }
    entryStart_ = Size();
    begun_ = completed_ + 1;
}

void LogFile::MoveTo(std::int64_t position) noexcept {
    const unsigned other = 1 - now_;
    extents_[other] = {position, 0};
    now_ = other;
    buffered_ = 0;
}

// Goes back to an earlier end of the entries.
void LogFile::RewindTo(std::int64_t end) noexcept {
    if (end < Now().position) return CutAt(end);
    Now().used = static_cast<std::size_t>(end - Now().position);
}

void LogFile::CutAt(std::int64_t end) noexcept {
    MoveTo(end);
    FILE_END_OF_FILE_INFO newEnd = {};
    newEnd.EndOfFile.QuadPart = end;
    ::SetFileInformationByHandle(handle_.get(), FileEndOfFileInfo, &newEnd, sizeof newEnd);
}

bool LogFile::EncodeAll(std::initializer_list<std::wstring_view> pieces) noexcept {
    return std::all_of(pieces.begin(), pieces.end(),
                       [this](std::wstring_view piece) { return Encode(piece); });
}

bool LogFile::Encode(std::wstring_view text) noexcept {
    constexpr std::size_t kMost = kBufferSize / kLongestUnit;
    while (!text.empty()) {
        std::size_t units = std::min(text.size(), kMost);
        // A pair stays together.
        if (units < text.size() && ql::IsHighSurrogate(text[units - 1])) --units;
        if (!MakeRoom(units * kLongestUnit)) return false;
        char* const end = Put(buffer_.data() + Now().used, text.substr(0, units));
        Now().used = static_cast<std::size_t>(end - buffer_.data());
        text.remove_prefix(units);
    }
    return true;
}

bool LogFile::MakeRoom(std::size_t bytes) noexcept {
    return kBufferSize - Now().used >= bytes || Flush();
}

bool LogFile::Flush() noexcept {
    const auto [position, used] = Now();
    if (used == 0) return true;
    DWORD written = 0;
    if (ql::MoveTo(handle_.get(), position))
        ::WriteFile(handle_.get(), buffer_.data(), static_cast<DWORD>(used), &written, nullptr);
    if (written < used) return false;  // goes to the same place the next time
    MoveTo(position + written);
    return true;
}

void LogFile::Close() noexcept {
    if (!IsOpen()) return;
    if (IsAmidEntry()) RewindTo(entryStart_);
    begun_ = completed_;
    if (!Flush()) {
        ql::CountLostLines(ql::LostTo::kDisk, buffered_);
        CutAt(Now().position);
    }
    // Closed before it is forgotten: a handle that nobody knows would hold the file beyond the end of this
    // thread.
    ::CloseHandle(handle_.get());
    handle_.release();
}

}  // namespace QLLoggerOutputs
