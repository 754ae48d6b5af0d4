#pragma once

#include <string>
#include <string_view>

namespace ql::zip {

// Between the interface's ANSI, the system's UTF-16 and the engines' UTF-8. A null text is an empty one.
std::wstring WideFromAnsi(const char* text);
std::string Utf8FromAnsi(const char* text);
std::wstring WideFromUtf8(std::string_view text);
std::string Utf8FromWide(std::wstring_view text);

// A character that ANSI does not have becomes "?": as a wild card the answer still finds the name.
std::string AnsiFromUtf8(std::string_view text);

}  // namespace ql::zip
