#include "engine/windows_text.h"

#include "engine/name_encoding.h"
#include "platform/win32.h"
#include "text/unicode.h"

namespace ql::zip {
namespace {

// A pair of surrogates is one character, which ANSI does not have.
std::wstring WithoutPairs(std::string_view utf8) {
    std::wstring wide;
    for (char32_t c : CodePoints(utf8)) wide += c < kFirstSupplementary ? static_cast<wchar_t>(c) : L'?';
    return wide;
}

}  // namespace

std::wstring WideFromAnsi(const char* text) {
    return Widen(CP_ACP, text ? text : "");
}
std::string Utf8FromAnsi(const char* text) {
    return ToUtf8(WideFromAnsi(text));
}
std::wstring WideFromUtf8(std::string_view text) {
    return FromUtf8(text).value();
}
std::string Utf8FromWide(std::wstring_view text) {
    return ToUtf8(text);
}
std::string AnsiFromUtf8(std::string_view text) {
    // There is nothing to leave out then, and the system refuses the flag.
    if (::GetACP() == CP_UTF8) return std::string(text);
    const std::wstring wide = WithoutPairs(text);
    const auto narrow = [&wide](char* into, int room) {
        return ::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(), static_cast<int>(wide.size()),
                                     into, room, nullptr, nullptr);
    };
    std::string ansi(static_cast<std::size_t>(narrow(nullptr, 0)), '\0');
    narrow(ansi.data(), static_cast<int>(ansi.size()));
    return ansi;
}

}  // namespace ql::zip
