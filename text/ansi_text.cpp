#include "text/ansi_text.h"

#include <string_view>

#include "platform/win32.h"

namespace {

constexpr unsigned long kFirstSupplementary = 0x10000;
constexpr unsigned long kLastCharacter = 0x10FFFF;

std::wstring_view ViewOf(const wchar_t* text) {
    return text ? text : std::wstring_view();
}

// UTF-8 as the ANSI code page holds every character, and the system refuses a default character with it.
const char* DefaultCharacter() {
    return ::GetACP() == CP_UTF8 ? nullptr : "?";
}

// The number of bytes: written, or needed when there is no room to write to; 0 when the system refuses.
int Convert(std::wstring_view text, char* bytes, std::size_t room) {
    return ::WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), bytes,
                                 static_cast<int>(room), DefaultCharacter(), nullptr);
}

// A byte a unit is enough, but for texts of many-byte code pages: only those are measured.
std::string ToAnsi(std::wstring_view text) {
    if (text.empty()) return {};
    std::string bytes(text.size(), '\0');
    int written = Convert(text, bytes.data(), bytes.size());
    if (written == 0 && ::GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        bytes.resize(static_cast<std::size_t>(Convert(text, nullptr, 0)));
        written = Convert(text, bytes.data(), bytes.size());
    }
    bytes.resize(static_cast<std::size_t>(written));
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

std::wstring Utf16Of(unsigned long character) {
    if (character < kFirstSupplementary) return {static_cast<wchar_t>(character)};
    const unsigned long offset = character - kFirstSupplementary;
    return {static_cast<wchar_t>(0xD800 + (offset >> 10)), static_cast<wchar_t>(0xDC00 + (offset & 0x3FF))};
}

}  // namespace

std::string WideToStdString(const wchar_t* text) {
    return ToAnsi(ViewOf(text));
}

RWCString WideToRWCString(const wchar_t* text) {
    return ToAnsi(ViewOf(text));
}

RWCString RWTStringToRWCString(const RWWString& text) {
    return ToAnsi(text);
}

RWWString AnsiToRWWString(const char* text) {
    return text ? ToWide(text) : std::wstring();
}

RWWString RWCStringToRWWString(const RWCString& text) {
    std::wstring wide;
    wide.reserve(text.length());
    for (std::string_view rest = text;;) {
        const std::size_t zero = rest.find('\0');
        AppendWide(rest.substr(0, zero), wide);
        if (zero == std::string_view::npos) return wide;
        wide.push_back(L'\0');
        rest.remove_prefix(zero + 1);
    }
}

RWWString MakeRWTStringAnsiOnly(const wchar_t* text) {
    return ToWide(ToAnsi(ViewOf(text)));
}

unsigned char WideCharToSingleByte(unsigned long ch) {
    const std::string bytes = ch <= kLastCharacter ? ToAnsi(Utf16Of(ch)) : std::string();
    return static_cast<unsigned char>(bytes.empty() ? '_' : bytes.front());
}
