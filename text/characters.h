#pragma once

#include <string>
#include <string_view>

// Letters and case for the whole library: by the system's fixed tables, never by a locale. Units are UTF-16
// and are taken one by one.
namespace ql {

bool IsLetter(wchar_t unit) noexcept;
bool IsUpperLetter(wchar_t unit) noexcept;
bool IsLowerLetter(wchar_t unit) noexcept;

// Unit for unit, so that the length never changes.
void MakeUpper(std::wstring& text) noexcept;
void MakeLower(std::wstring& text) noexcept;

// Negative, 0 or positive; texts are ordered by their upper-cased units.
int CompareIgnoringCase(std::wstring_view a, std::wstring_view b) noexcept;
bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b) noexcept;
bool StartsWithIgnoringCase(std::wstring_view text, std::wstring_view start) noexcept;

}  // namespace ql
