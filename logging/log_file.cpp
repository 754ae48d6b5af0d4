#include "logging/log_file.h"

#include <atomic>
#include <utility>

namespace QLLoggerOutputs {

namespace {

constexpr std::wstring_view kByteOrderMark = L"\xFEFF";
constexpr std::size_t kLongestUnit = 3;
constexpr char32_t kReplacement = 0xFFFD;

constexpr bool IsHighSurrogate(wchar_t unit) noexcept {
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool IsLowSurrogate(wchar_t unit) noexcept {
    return (unit & 0xFC00) == 0xDC00;
}

// The character that begins a text, and how many units it takes.
struct Character {
    char32_t code;
    std::size_t units;
};
Character FirstCharacter(std::wstring_view text) noexcept {
    const wchar_t unit = text[0];
    if (IsHighSurrogate(unit) && text.size() > 1 && IsLowSurrogate(text[1])) {
        return {0x10000u + ((unit & 0x3FFu) << 10) + (text[1] & 0x3FFu), 2};
    }
    const bool alone = IsHighSurrogate(unit) || IsLowSurrogate(unit);
    return {alone ? kReplacement : static_cast<char32_t>(unit), 1};
}

char* PutTail(char* out, char32_t code, int bytes) noexcept {
    for (int shift = 6 * (bytes - 1); shift >= 0; shift -= 6) {
        *out++ = static_cast<char>(0x80u | ((code >> shift) & 0x3Fu));
    }
    return out;
}

char* PutBeyondAscii(char* out, char32_t code) noexcept {
    if (code < 0x800) {
        *out++ = static_cast<char>(0xC0u | (code >> 6));
        return PutTail(out, code, 1);
    }
    if (code < 0x10000) {
        *out++ = static_cast<char>(0xE0u | (code >> 12));
        return PutTail(out, code, 2);
    }
    *out++ = static_cast<char>(0xF0u | (code >> 18));
    return PutTail(out, code, 3);
}

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
        const Character character = FirstCharacter(text);
        out = PutBeyondAscii(out, character.code);
        text.remove_prefix(character.units);
    }
    return out;
}

// The compiler keeps what is stored before in memory before what follows: the thread may end in between.
void StoresUpToHere() noexcept {
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

}  // namespace

void LogFile::Open(const wchar_t* path, Start start) noexcept {
    Close();
    if (!path) return;
    const DWORD creation = start == Start::kEmpty ? CREATE_ALWAYS : OPEN_ALWAYS;
    handle_.reset(::CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, creation,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size = {};
    if (IsOpen() && !::GetFileSizeEx(handle_.get(), &size)) handle_.reset();
    position_ = size.QuadPart;
    used_ = 0;
    inEntry_ = false;
    if (!IsOpen() || position_ > 0) return;
    Append({kByteOrderMark}, Reach::kSystem);
}

void LogFile::Append(std::initializer_list<std::wstring_view> pieces, Reach reach) noexcept {
    if (!IsOpen()) return;
    BeginEntry();
    for (const std::wstring_view piece : pieces) {
        if (Encode(piece)) continue;
        RewindTo(entryStart_);
        break;
    }
    if (reach == Reach::kSystem) Flush();
    StoresUpToHere();
    inEntry_ = false;
}

void LogFile::BeginEntry() noexcept {
    if (inEntry_) RewindTo(entryStart_);
    entryStart_ = Size();
    StoresUpToHere();
    inEntry_ = true;
    StoresUpToHere();
}

// Goes back to an earlier end of the entries.
void LogFile::RewindTo(std::int64_t end) noexcept {
    if (end >= position_) {
        used_ = static_cast<std::size_t>(end - position_);
    } else {
        CutAt(end);
    }
}

void LogFile::CutAt(std::int64_t end) noexcept {
    used_ = 0;
    position_ = end;
    FILE_END_OF_FILE_INFO newEnd = {};
    newEnd.EndOfFile.QuadPart = end;
    ::SetFileInformationByHandle(handle_.get(), FileEndOfFileInfo, &newEnd, sizeof newEnd);
}

bool LogFile::Encode(std::wstring_view text) noexcept {
    constexpr std::size_t kMost = kBufferSize / kLongestUnit;
    while (!text.empty()) {
        std::size_t units = text.size() < kMost ? text.size() : kMost;
        // A pair stays together.
        if (units < text.size() && IsHighSurrogate(text[units - 1])) --units;
        if (!MakeRoom(units * kLongestUnit)) return false;
        used_ = static_cast<std::size_t>(Put(buffer_.data() + used_, text.substr(0, units)) - buffer_.data());
        text.remove_prefix(units);
    }
    return true;
}

bool LogFile::MakeRoom(std::size_t bytes) noexcept {
    if (kBufferSize - used_ >= bytes) return true;
    Flush();
    return kBufferSize - used_ >= bytes;
}

bool LogFile::Flush() noexcept {
    if (!IsOpen() || used_ == 0) return true;
    LARGE_INTEGER place = {};
    place.QuadPart = position_;
    DWORD written = 0;
    const bool ok = ::SetFilePointerEx(handle_.get(), place, nullptr, FILE_BEGIN) &&
                    ::WriteFile(handle_.get(), buffer_.data(), static_cast<DWORD>(used_), &written, nullptr);
    if (!ok || written < used_) return false;  // the same bytes go to the same place the next time
    used_ = 0;
    position_ += written;
    return true;
}

void LogFile::Close() noexcept {
    if (std::exchange(inEntry_, false)) RewindTo(entryStart_);
    if (!Flush()) CutAt(position_);
    handle_.reset();
}

}  // namespace QLLoggerOutputs
