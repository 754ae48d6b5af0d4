#include "engine/windows_text.h"

#include "engine/name_encoding.h"
#include "platform/win32.h"
#include "text/unicode.h"

namespace ql::zip {
namespace {

std::wstring Widen(UINT codePage, std::string_view text) {
    const int size = static_cast<int>(text.size());
    const int length = ::MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    ::MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), length);
    return wide;
}

std::string Narrow(UINT codePage, DWORD flags, std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    const int length =
        ::WideCharToMultiByte(codePage, flags, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(length), '\0');
    ::WideCharToMultiByte(codePage, flags, text.data(), size, narrow.data(), length, nullptr, nullptr);
    return narrow;
}

// A pair of surrogates is one character, which ANSI does not have.
std::wstring WithoutPairs(std::string_view utf8) {
    std::wstring wide;
    for (char32_t c : CodePoints(utf8)) wide += c < kFirstSupplementary ? static_cast<wchar_t>(c) : L'?';
    return wide;
}

}  // namespace

std::wstring WideFromAnsi(const char* text) {
    return text ? Widen(CP_ACP, text) : std::wstring();
}
std::string Utf8FromAnsi(const char* text) {
    return Utf8FromWide(WideFromAnsi(text));
}
std::wstring WideFromUtf8(std::string_view text) {
    return Widen(CP_UTF8, text);
}
std::string Utf8FromWide(std::wstring_view text) {
    return Narrow(CP_UTF8, 0, text);
}
std::string AnsiFromUtf8(std::string_view text) {
    // There is nothing to leave out then, and the system refuses the flag.
    if (::GetACP() == CP_UTF8) return std::string(text);
    return Narrow(CP_ACP, WC_NO_BEST_FIT_CHARS, WithoutPairs(text));
}

}  // namespace ql::zip
