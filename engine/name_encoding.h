#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ql::zip {

// Names are UTF-8 inside the engines. The format knows two encodings: UTF-8, marked by a flag, and the code
// page of the machine's consoles, which is taken to be that of the machine that wrote.
bool IsAscii(std::string_view bytes);
bool IsUtf8(std::string_view bytes);
std::wstring Widen(unsigned codePage, std::string_view bytes);
std::string Utf8FromOem(std::string_view bytes);

// Code points; a byte that belongs to none stands for itself.
std::u32string CodePoints(std::string_view utf8);

// Code points without their case: names that differ in case alone are one.
std::u32string Folded(std::string_view utf8);

// The same without copies, and with both separators taken for one.
bool IsSameFolded(std::string_view a, std::string_view b);
std::uint32_t FoldedHash(std::string_view name);

}  // namespace ql::zip
