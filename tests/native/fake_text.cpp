#include <windows.h>

#include <iconv.h>
#include <locale.h>
#include <wctype.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "tests/native/ansi_page.h"
#include "tests/native/system_memory.h"

namespace {

using fake::g_page;

// By iconv; nothing when the text is not of the page.
template <class To, class From>
std::basic_string<To> ByPage(const char* to, const char* from, const From* text, int length) {
    const iconv_t converter = iconv_open(to, from);
    std::basic_string<To> result(static_cast<std::size_t>(length) * 4, To());
    auto* in = const_cast<char*>(reinterpret_cast<const char*>(text));
    auto* out = reinterpret_cast<char*>(result.data());
    std::size_t inLeft = static_cast<std::size_t>(length) * sizeof(From);
    std::size_t outLeft = result.size() * sizeof(To);
    const bool isWhole = iconv(converter, &in, &inLeft, &out, &outLeft) == 0;
    iconv_close(converter);
    result.resize(isWhole ? result.size() - outLeft / sizeof(To) : 0);
    return result;
}

// The common end of the conversions: the size alone when there is no room to fill.
template <class Unit>
int Deliver(const std::basic_string<Unit>& result, Unit* out, int capacity) {
    const int length = static_cast<int>(result.size());
    if (capacity == 0) return length;
    if (capacity < length) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    std::copy(result.begin(), result.end(), out);
    return length;
}

template <class Unit>
std::basic_string_view<Unit> Counted(const Unit* text, int length) {
    return {text, static_cast<std::size_t>(length)};
}

// --- Code page 1252

// Bytes 0x80 to 0x9f; all others are their own characters.
constexpr std::wstring_view kUpperControls =
    L"\u20ac\x81\u201a\u0192\u201e\u2026\u2020\u2021\u02c6\u2030\u0160\u2039\u0152\x8d\u017d\x8f"
    L"\x90\u2018\u2019\u201c\u201d\u2022\u2013\u2014\u02dc\u2122\u0161\u203a\u0153\x9d\u017e\u0178";

// Of the system's many stand-ins for characters that the page does not hold, those of the wide forms of
// ASCII.
wchar_t BestFit(wchar_t unit) {
    if (unit >= 0xff01 && unit <= 0xff5e) return static_cast<wchar_t>(unit - 0xff00 + 0x20);
    return unit;
}

wchar_t FromAnsi(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0x80 && code <= 0x9f ? kUpperControls[code - 0x80] : static_cast<wchar_t>(code);
}

char ToAnsi(wchar_t unit) {
    const std::size_t control = kUpperControls.find(unit);
    if (control != kUpperControls.npos) return static_cast<char>(control + 0x80);
    return unit < 0x80 || (unit > 0x9f && unit <= 0xff) ? static_cast<char>(unit) : '?';
}

// --- Letters

locale_t UnicodeLocale() {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

// The system maps case only where the mapping back gives the same character again.
template <auto Map, auto Back>
wchar_t MapCase(wchar_t unit) {
    const auto code = static_cast<wint_t>(unit);
    const wint_t mapped = Map(code, UnicodeLocale());
    return Back(mapped, UnicodeLocale()) == code ? static_cast<wchar_t>(mapped) : unit;
}

std::wstring Mapped(const wchar_t* text, int length, DWORD mapping) {
    const auto map =
        mapping == LCMAP_UPPERCASE ? MapCase<towupper_l, towlower_l> : MapCase<towlower_l, towupper_l>;
    std::wstring result(Counted(text, length));
    for (wchar_t& unit : result) unit = map(unit);
    return result;
}

}  // namespace

BOOL GetCPInfo(UINT, CPINFO* info) {
    *info = {g_page.mostBytesOfACharacter};
    return TRUE;
}

int MultiByteToWideChar(UINT codePage, DWORD, const char* text, int length, wchar_t* out, int capacity) {
    const fake::SystemMemory own;
    // 437 is the usual one of the console.
    if (const char* const page = codePage == CP_OEMCP ? "CP437" : g_page.name)
        return Deliver(ByPage<wchar_t>("WCHAR_T", page, text, length), out, capacity);
    std::wstring result;
    for (const char byte : Counted(text, length)) result += FromAnsi(byte);
    return Deliver(result, out, capacity);
}

int WideCharToMultiByte(UINT, DWORD, const wchar_t* text, int length, char* out, int capacity, const char*,
                        BOOL*) {
    const fake::SystemMemory own;
    if (g_page.name) return Deliver(ByPage<char>(g_page.name, "WCHAR_T", text, length), out, capacity);
    std::string result;
    for (const wchar_t unit : Counted(text, length)) result += ToAnsi(BestFit(unit));
    return Deliver(result, out, capacity);
}

BOOL GetStringTypeW(DWORD, const wchar_t* text, int length, WORD* classes) {
    for (const wchar_t unit : Counted(text, length)) {
        const auto code = static_cast<wint_t>(unit);
        const bool isCircled = unit >= L'\u24b6' && unit <= L'\u24e9';  // a letter here, a symbol there
        *classes++ = static_cast<WORD>((iswupper_l(code, UnicodeLocale()) ? C1_UPPER : 0) |
                                       (iswlower_l(code, UnicodeLocale()) ? C1_LOWER : 0) |
                                       (iswalpha_l(code, UnicodeLocale()) && !isCircled ? C1_ALPHA : 0));
    }
    return TRUE;
}

int LCMapStringEx(const wchar_t*, DWORD mapping, const wchar_t* text, int length, wchar_t* out, int capacity,
                  void*, void*, std::intptr_t) {
    const fake::SystemMemory own;
    return Deliver(Mapped(text, length, mapping), out, capacity);
}

int CompareStringOrdinal(const wchar_t* a, int lengthOfA, const wchar_t* b, int lengthOfB, BOOL) {
    const fake::SystemMemory own;
    const int order = Mapped(a, lengthOfA, LCMAP_UPPERCASE).compare(Mapped(b, lengthOfB, LCMAP_UPPERCASE));
    return CSTR_EQUAL + (order > 0) - (order < 0);
}
