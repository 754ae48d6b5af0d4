#include "text/ansi_text.h"

#include <string_view>

#include "platform/win32.h"

namespace {

constexpr unsigned long kFirstSupplementary = 0x10000;
constexpr unsigned long kLastCharacter = 0x10FFFF;

// Null where the code page's own default character is "?", which is nearly everywhere: with a character of
// the caller's the system converts several times slower, and for UTF-8 not at all.
const char* DefaultCharacter() {
    CPINFO info = {};
    const bool isOwn = ::GetCPInfo(CP_ACP, &info) && info.DefaultChar[0] == '?' && info.DefaultChar[1] == 0;
    return isOwn ? nullptr : "?";
}

// The number of bytes: written, or needed when there is no room to write to; 0 when the system refuses.
std::size_t Convert(std::wstring_view text, char* bytes, std::size_t room) {
    return static_cast<std::size_t>(
        ::WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), bytes,
                              static_cast<int>(room), DefaultCharacter(), nullptr));
}

// A byte a unit is enough, but for texts of many-byte code pages: only those are measured.
std::string ToAnsi(std::wstring_view text) {
    if (text.empty()) return {};
    std::string bytes(text.size(), '\0');
    std::size_t written = Convert(text, bytes.data(), bytes.size());
    if (written == 0 && ::GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        bytes.resize(Convert(text, nullptr, 0));
        written = Convert(text, bytes.data(), bytes.size());
    }
    bytes.resize(written);
    return bytes;
}

// A unit a byte is always enough.
void AppendWide(std::string_view text, std::wstring& out) {
    if (text.empty()) return;
    const std::size_t start = out.size();
    const int room = static_cast<int>(text.size());
    out.resize(start + text.size());
    const int written = ::MultiByteToWideChar(CP_ACP, 0, text.data(), room, out.data() + start, room);
    out.resize(start + static_cast<std::size_t>(written));
}

std::wstring ToWide(std::string_view text) {
    std::wstring wide;
    AppendWide(text, wide);
    return wide;
}

// Zeros are rare: a block without any is passed over in a few steps, which a search byte by byte is not.
std::size_t FindZero(std::string_view text) {
    constexpr std::size_t kBlock = 64;
    std::size_t at = 0;
    for (; text.size() - at >= kBlock; at += kBlock) {
        unsigned char found = 0;
        for (std::size_t i = at; i < at + kBlock; ++i)
            found = static_cast<unsigned char>(found | (text[i] == '\0'));
        if (found) break;
    }
    return text.find('\0', at);
}

std::wstring Utf16Of(unsigned long character) {
    if (character < kFirstSupplementary) return {static_cast<wchar_t>(character)};
    const unsigned long offset = character - kFirstSupplementary;
    return {static_cast<wchar_t>(0xD800 + (offset >> 10)), static_cast<wchar_t>(0xDC00 + (offset & 0x3FF))};
}

}  // namespace

std::string WideToStdString(ql::TextView text) {
    return ToAnsi(text);
}

RWCString WideToRWCString(ql::TextView text) {
    return ToAnsi(text);
}

RWCString RWTStringToRWCString(const RWWString& text) {
    return ToAnsi(text);
}

RWWString AnsiToRWWString(const char* text) {
    return ToWide(ql::TextOf(text));
}

RWWString RWCStringToRWWString(const RWCString& text) {
    std::wstring wide;
    wide.reserve(text.length());
    for (std::string_view rest = text;;) {
        const std::size_t zero = FindZero(rest);
        AppendWide(rest.substr(0, zero), wide);
        if (zero == std::string_view::npos) return wide;
        wide.push_back(L'\0');
        rest.remove_prefix(zero + 1);
    }
}

RWWString MakeRWTStringAnsiOnly(ql::TextView text) {
    return ToWide(ToAnsi(text));
}

unsigned char WideCharToSingleByte(unsigned long ch) {
    const std::string bytes = ch <= kLastCharacter ? ToAnsi(Utf16Of(ch)) : std::string();
    return static_cast<unsigned char>(bytes.empty() ? '_' : bytes.front());
}
