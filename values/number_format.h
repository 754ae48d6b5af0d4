#pragma once

#include <algorithm>
#include <cstddef>

#include "platform/export.h"

// Numbers for people's eyes, in no locale but the format given. Any thread may call these at any time.

// How FloatFormatStringExt writes a number.
struct tagQL_FLOATFORMAT {
    wchar_t leadingSymbol;     // stands before the sign; 0 for none
    wchar_t decimalSeparator;  // 0 leaves out the decimals
    wchar_t groupSeparator;    // between groups of three digits; 0 for none
};
static_assert(sizeof(tagQL_FLOATFORMAT) == 3 * sizeof(wchar_t) &&
              offsetof(tagQL_FLOATFORMAT, decimalSeparator) == sizeof(wchar_t) &&
              offsetof(tagQL_FLOATFORMAT, groupSeparator) == 2 * sizeof(wchar_t));

// The characters of every buffer that is large enough for a number without decimals: the symbol, the sign,
// the 309 digits of 1.8e308 with 102 separators between their groups, the decimal separator and the
// terminator.
inline constexpr std::size_t kFloatFormatWholeChars = 1 + 1 + 309 + 102 + 1 + 1;

// The characters, terminator included, that no number formatted with so many places exceeds: 417 for 2
// places.
constexpr std::size_t FloatFormatBufferChars(short places) noexcept {
    return kFloatFormatWholeChars + static_cast<std::size_t>(std::max<short>(places, 0));
}

// Cuts (or rounds, half away from zero) a number to so many decimals in a way that forgives the small error
// of a binary fraction: it is first moved away from zero by 10^-(places + 5). Places are clamped to 0 to 8. A
// number without a fraction, an infinity and not-a-number come back as they are. The last digits of one whose
// product with 10^places goes beyond 2^53 (with 8 places, from about 90 million on) may change.
//     FudgeDouble(2.675, 2, true) -> 2.68,  FudgeDouble(2.675, 2, false) -> 2.67
QL_API double FudgeDouble(double value, long places, bool round) noexcept;

// Writes the number in fixed-point form with so many decimals (negative places count as 0) into the buffer,
// which has room for FloatFormatBufferChars(places), and returns the buffer. The decimals are those of the
// exact binary value, correctly rounded, an exact half to the even digit: 0.125 with 2 places -> 0.12. Writes
// nothing to a null buffer and an empty text for a null format. Kept on purpose:
//  - The sign stands after the symbol: $-1,234.50. A number that is written as zero has no sign, but keeps it
//    behind a symbol: $-0.00.
//  - Without a decimal separator the text ends where it would stand, after rounding to the places: with 1
//    place 1.96 -> 2, but 1.5 -> 1.
//  - A text whose last character is the decimal separator loses it, also when the separator is a digit and
//    that character one of the number's.
//  - An infinity is "inf" behind its sign, and not-a-number "nan" without one, in place of the digits before
//    the point; the decimals are zeros: -inf.00.
QL_API wchar_t* FloatFormatStringExt(double value, wchar_t* buffer, const tagQL_FLOATFORMAT* format,
                                     short places) noexcept;

// The same with a point, commas between the groups if `thousands`, a leading dollar sign if `currency`.
//     FloatFormatString(-1234.5, buffer, true, true, 2) -> $-1,234.50
QL_API wchar_t* FloatFormatString(double value, wchar_t* buffer, bool thousands, bool currency,
                                  short places) noexcept;
