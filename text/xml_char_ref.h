#pragma once

#include "platform/export.h"

// Recognise a numeric character reference ("&#65;" or "&#x41;", "X" too) at the cursor, in a text that ends
// with a zero. On success *value is the number (null asks for none) and *cursor stands past the ";"; else
// both are left as they are. Kept on purpose: no digit at all is accepted ("&#;" is 0), and the number is
// taken modulo 2^32, whether or not it is a character. Safe to call from any thread; a null text holds no
// reference.
QL_API bool IsXmlCharEntityRefW(const wchar_t** cursor, unsigned long* value);
QL_API bool IsXmlCharEntityRefA(const char** cursor, unsigned long* value);

// The number of characters of a text in the ANSI code page, each numeric character reference counting as one,
// and so each character of several bytes; a byte that belongs to no character counts as one. Null is the
// empty text.
QL_API int AnsiWithEntitiesCharLength(const char* text);
