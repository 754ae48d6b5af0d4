#pragma once

#include <string>
#include <string_view>

namespace ql::zip {

// Names are UTF-8 inside the engines. The format knows two encodings: UTF-8, marked by a flag, and code page
// 437.
bool IsUtf8(std::string_view bytes);
std::string Utf8FromCp437(std::string_view bytes);

// Code points; a byte that belongs to none stands for itself.
std::u32string CodePoints(std::string_view utf8);

// Code points with the case of Latin, Greek and Cyrillic letters taken away: names that differ in case alone
// are one.
std::u32string Folded(std::string_view utf8);

}  // namespace ql::zip
