#include "text/ansi_text.h"

#include <string_view>
#include <type_traits>

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

// Copies the blocks of plain ASCII that a text starts with, which every ANSI code page holds as it is, and
// answers how many units that were. Most texts are nothing else, and the system takes far longer.
template <class From, class To>
std::size_t CopyAscii(std::basic_string_view<From> text, To* out) {
    constexpr std::size_t kBlock = 16;
    constexpr unsigned kFirstOther = 0x80;
    std::size_t copied = 0;
    for (; text.size() - copied >= kBlock; copied += kBlock) {
        const From* const from = text.data() + copied;
        unsigned every = 0;
        for (std::size_t i = 0; i < kBlock; ++i) every |= static_cast<std::make_unsigned_t<From>>(from[i]);
        if (every >= kFirstOther) break;
        for (std::size_t i = 0; i < kBlock; ++i) out[copied + i] = static_cast<To>(from[i]);
    }
    return copied;
}

// The number of bytes: written, or needed when there is no room to write to; 0 when the system refuses.
std::size_t Convert(std::wstring_view text, char* bytes, std::size_t room) {
    return static_cast<std::size_t>(
        ::WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), bytes,
                              static_cast<int>(room), DefaultCharacter(), nullptr));
}

// A byte a unit is enough, but for texts of many-byte code pages: only those are measured.
std::string ToAnsi(std::wstring_view text) {
    std::string bytes(text.size(), '\0');
    const std::size_t ascii = CopyAscii(text, bytes.data());
    text.remove_prefix(ascii);
    if (text.empty()) return bytes;
    std::size_t written = Convert(text, bytes.data() + ascii, text.size());
    if (written == 0 && ::GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        const std::size_t needed = Convert(text, nullptr, 0);
        bytes.resize(ascii + needed);
        written = Convert(text, bytes.data() + ascii, needed);
    }
    bytes.resize(written == 0 ? 0 : ascii + written);
    return bytes;
}

// A unit a byte is always enough.
void AppendWide(std::string_view text, std::wstring& out) {
    const std::size_t start = out.size();
    out.resize(start + text.size());
    const std::size_t ascii = CopyAscii(text, out.data() + start);
    text.remove_prefix(ascii);
    if (text.empty()) return;
    const int room = static_cast<int>(text.size());
    const int written = ::MultiByteToWideChar(CP_ACP, 0, text.data(), room, out.data() + start + ascii, room);
    out.resize(written == 0 ? start : start + ascii + static_cast<std::size_t>(written));
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
