#pragma once

#include <algorithm>
#include <string_view>

namespace ql {

// What follows the program's name on its command line, without the blanks and tabs in front of it. The name
// ends as the C run time reads it: at the first blank or tab outside double quotes.
constexpr std::wstring_view WithoutProgramName(std::wstring_view line) noexcept {
    constexpr std::wstring_view kBlanks = L" \t";
    bool isQuoted = false;
    const auto end = std::ranges::find_if(line, [&](wchar_t unit) {
        if (unit == L'"') isQuoted = !isQuoted;
        return !isQuoted && kBlanks.find(unit) != std::wstring_view::npos;
    });
    line.remove_prefix(static_cast<std::size_t>(end - line.begin()));
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    return line;
}

}  // namespace ql
