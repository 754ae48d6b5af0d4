#pragma once

#include <cstddef>
#include <string_view>

#include "platform/export.h"

// The decimal number that a text begins with.
struct Decimal {
    double value;  // 0 when not valid
    // Units of the number; when not valid, of what stands before the place where a digit is missing.
    std::size_t length;
    bool isValid;
};

// Reads "-12", "3.5", "01", "6e-7": an optional "-", digits, optionally a point and digits, optionally "e" or
// "E", a sign and digits. The value is the double nearest to the number, of two equally near ones the even
// one, however many digits there are, whatever the locale and on every processor; infinite beyond the range
// of double, 0 when too small. Takes no memory; safe on any thread.
QL_API Decimal ReadDecimal(std::wstring_view text) noexcept;
