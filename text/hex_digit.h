#pragma once

namespace ql {

inline constexpr unsigned kNoHexDigit = 16;

// The value of a hexadecimal digit of either case; kNoHexDigit of any other unit.
constexpr unsigned HexDigit(char32_t unit) noexcept {
    if (unit >= U'0' && unit <= U'9') return unit - U'0';
    if (unit >= U'A' && unit <= U'F') return unit - U'A' + 10;
    if (unit >= U'a' && unit <= U'f') return unit - U'a' + 10;
    return kNoHexDigit;
}

}  // namespace ql
