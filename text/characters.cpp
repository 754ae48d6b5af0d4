#include "text/characters.h"

#include <algorithm>

#include "platform/win32.h"

namespace ql {

namespace {

constexpr bool IsAscii(wchar_t unit) {
    return unit < 0x80;
}

constexpr wchar_t AsciiUpper(wchar_t unit) {
    return unit >= L'a' && unit <= L'z' ? static_cast<wchar_t>(unit - L'a' + L'A') : unit;
}

bool HasClass(wchar_t unit, WORD wanted) noexcept {
    WORD classes = 0;
    return ::GetStringTypeW(CT_CTYPE1, &unit, 1, &classes) && (classes & wanted) != 0;
}

void MapCase(std::wstring& text, DWORD mapping) noexcept {
    const int length = static_cast<int>(text.size());
    if (length == 0) return;
    ::LCMapStringEx(LOCALE_NAME_INVARIANT, mapping, text.data(), length, text.data(), length, nullptr,
                    nullptr, 0);
}

int CompareOrdinal(std::wstring_view a, std::wstring_view b) noexcept {
    return ::CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()),
                                  TRUE) -
           CSTR_EQUAL;
}

}  // namespace

bool IsLetter(wchar_t unit) noexcept {
    return HasClass(unit, C1_ALPHA);
}

bool IsUpperLetter(wchar_t unit) noexcept {
    return HasClass(unit, C1_UPPER);
}

bool IsLowerLetter(wchar_t unit) noexcept {
    return HasClass(unit, C1_LOWER);
}

void MakeUpper(std::wstring& text) noexcept {
    MapCase(text, LCMAP_UPPERCASE);
}

void MakeLower(std::wstring& text) noexcept {
    MapCase(text, LCMAP_LOWERCASE);
}

int CompareIgnoringCase(std::wstring_view a, std::wstring_view b) noexcept {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(), [](wchar_t x, wchar_t y) {
        return AsciiUpper(x) == AsciiUpper(y);
    });
    if (inA == a.end() || inB == b.end()) return (inA != a.end()) - (inB != b.end());
    // An ASCII unit comes before every other one's capital.
    if (IsAscii(std::min(*inA, *inB))) return AsciiUpper(*inA) < AsciiUpper(*inB) ? -1 : 1;
    return CompareOrdinal({inA, a.end()}, {inB, b.end()});
}

bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b) noexcept {
    return a.size() == b.size() && CompareIgnoringCase(a, b) == 0;
}

bool StartsWithIgnoringCase(std::wstring_view text, std::wstring_view start) noexcept {
    return EqualIgnoringCase(text.substr(0, start.size()), start);
}

}  // namespace ql
