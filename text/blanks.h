#pragma once

#include <algorithm>
#include <string_view>

// What surrounds the texts that hosts hand in. Only the blank itself is one: a tab, say, is not.
namespace ql {

constexpr std::wstring_view WithoutTrailingBlanks(std::wstring_view text) {
    return text.substr(0, text.find_last_not_of(L' ') + 1);
}

constexpr std::wstring_view WithoutBlanks(std::wstring_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(L' '), text.size()));
    return WithoutTrailingBlanks(text);
}

// Each end loses its quote on its own: the two need not be a pair.
constexpr std::wstring_view WithoutQuotes(std::wstring_view text) {
    if (text.starts_with(L'"')) text.remove_prefix(1);
    if (text.ends_with(L'"')) text.remove_suffix(1);
    return text;
}

}  // namespace ql
