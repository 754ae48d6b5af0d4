#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "text/unit_block.h"

// Kinds of units, the escapes of texts, and a quick way over the units between those.
namespace JSON {

constexpr bool IsDigit(wchar_t unit) {
    return unit >= L'0' && unit <= L'9';
}

constexpr bool IsAsciiLetter(wchar_t unit) {
    return (unit >= L'a' && unit <= L'z') || (unit >= L'A' && unit <= L'Z');
}

using ql::Block;
using ql::FirstOf;
using ql::kBlockUnits;
using ql::Unit;

struct Escape {
    Unit letter;  // behind the backslash
    Unit unit;
};

inline constexpr Escape kEscapes[] = {
    {L'"', L'"'}, {L'\\', L'\\'}, {L'/', L'/'}, {L'b', 8}, {L'f', 12}, {L'n', 10}, {L'r', 13}, {L't', 9},
};

using AsciiTable = std::array<Unit, 128>;  // 0 where there is nothing

inline constexpr AsciiTable kUnitOfLetter = [] {
    AsciiTable table{};
    for (const Escape& escape : kEscapes) table[escape.letter] = escape.unit;
    return table;
}();

inline constexpr AsciiTable kLetterOfUnit = [] {
    AsciiTable table{};
    for (const Escape& escape : kEscapes) table[escape.unit] = escape.letter;
    return table;
}();

// 0 for units beyond the table.
constexpr wchar_t LookUp(const AsciiTable& table, wchar_t unit) {
    const auto index = static_cast<char32_t>(unit);
    return index < table.size() ? static_cast<wchar_t>(table[index]) : L'\0';
}

// Keys of one section differ late.
inline bool IsBefore(std::wstring_view a, std::wstring_view b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    const wchar_t *left = a.data(), *right = b.data();
    const wchar_t* const end = left + common;
    for (; end - left >= kBlockUnits; left += kBlockUnits, right += kBlockUnits) {
        Block first, second;
        std::memcpy(&first, left, sizeof(first));
        std::memcpy(&second, right, sizeof(second));
        const std::ptrdiff_t same = FirstOf(std::bit_cast<Block>(first != second));
        if (same < kBlockUnits) return left[same] < right[same];
    }
    for (; left != end; ++left, ++right) {
        if (*left != *right) return *left < *right;
    }
    return a.size() < b.size();
}

// ql::FindUnit that copies what comes before it to `out`, which moves on. There is room for all of [from,
// end): what is written there behind `out` does not count. Said by FindUnit, with a predicate that copies, it
// would take an eighth longer for usual texts.
template <class Predicate>
const wchar_t* CopyToSpecial(const wchar_t* from, const wchar_t* end, wchar_t*& out, Predicate isSpecial) {
    for (; end - from >= kBlockUnits; from += kBlockUnits, out += kBlockUnits) {
        Block block;
        std::memcpy(&block, from, sizeof(block));
        std::memcpy(out, &block, sizeof(block));
        const std::ptrdiff_t plain = FirstOf(std::bit_cast<Block>(isSpecial(block)));
        if (plain < kBlockUnits) {
            out += plain;
            return from + plain;
        }
    }
    while (from != end && !isSpecial(static_cast<Unit>(*from))) *out++ = *from++;
    return from;
}

}  // namespace JSON
