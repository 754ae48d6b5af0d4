#pragma once

#include <string>
#include <string_view>

#include "platform/export.h"
#include "rw/narrow_string.h"
#include "rw/wide_string.h"

// Between wide text (UTF-16) and the process's ANSI code page. Safe to call from any thread; null is the
// empty text. To ANSI, a character that the code page lacks becomes its best fit, else "?" for each of its
// units. To wide, characters are precomposed. A conversion that the system refuses, or that memory has no
// room for, gives an empty text.

// To the ANSI code page.
QL_API std::string WideToStdString(ql::TextView text);
QL_API RWCString WideToRWCString(ql::TextView text);

// The whole counted text, into one that the caller keeps and whose memory is used again, which is worth most
// where many texts are converted. Whether it was converted: the kept text is empty when it was not.
QL_API bool WideToAnsi(ql::TextView text, std::string& ansi);
QL_API bool AnsiToWide(std::string_view ansi, RWWString& text);  // a zero unit for each zero byte

// The whole counted text, with the zero units in it.
QL_API RWCString RWTStringToRWCString(const RWWString& text);

// From the ANSI code page.
QL_API RWWString AnsiToRWWString(const char* text);

// The whole counted text: each zero byte becomes a zero unit, on purpose, so that lists of zero-separated
// texts convert intact.
QL_API RWWString RWCStringToRWWString(const RWCString& text);

// To ANSI and back, so that only what the code page can hold is left.
QL_API RWWString MakeRWTStringAnsiOnly(ql::TextView text);

// The first ANSI byte of a Unicode character, "?" when the code page lacks it; "_" when it is not a character
// (above 0x10FFFF) or the system refuses to convert it.
QL_API unsigned char WideCharToSingleByte(unsigned long ch);
