#pragma once

#include <string>
#include <string_view>

// What paths are made of, told from their text alone.
namespace ql {

constexpr bool IsSeparator(wchar_t unit) noexcept {
    return unit == L'\\' || unit == L'/';
}

constexpr bool StartsWithSeparator(std::wstring_view path) noexcept {
    return !path.empty() && IsSeparator(path.front());
}

constexpr bool EndsWithSeparator(std::wstring_view path) noexcept {
    return !path.empty() && IsSeparator(path.back());
}

constexpr bool StartsWithTwoSeparators(std::wstring_view path) noexcept {
    return StartsWithSeparator(path) && StartsWithSeparator(path.substr(1));
}

// Folder preferences may be stored either way; one backslash goes, no more.
constexpr std::wstring_view WithoutTrailingBackslash(std::wstring_view folder) noexcept {
    return folder.substr(0, folder.size() - (folder.ends_with(L'\\') ? 1 : 0));
}

// The same in place, which needs no memory.
inline void CutTrailingBackslash(std::wstring& folder) noexcept {
    folder.resize(WithoutTrailingBackslash(folder).size());
}

}  // namespace ql
