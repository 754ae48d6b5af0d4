#pragma once

#include <emmintrin.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace ql {

// wchar_t is signed on some systems, and wider than a UTF-16 unit.
using Unit = std::conditional_t<sizeof(wchar_t) == 2, std::uint16_t, std::uint32_t>;

// A few units side by side, with which the processor calculates at once. What compares blocks answers all
// bits of a unit set, or none.
using Block = Unit __attribute__((vector_size(16)));
inline constexpr std::ptrdiff_t kBlockUnits = sizeof(Block) / sizeof(Unit);

// The place of the first unit that the comparison answered with all bits set, or kBlockUnits.
inline std::ptrdiff_t FirstOf(Block answer) noexcept {
    const auto bytes = static_cast<unsigned>(_mm_movemask_epi8(std::bit_cast<__m128i>(answer)));
    return bytes == 0 ? kBlockUnits : std::countr_zero(bytes) / static_cast<std::ptrdiff_t>(sizeof(Unit));
}

// The first unit of [from, end) that the predicate wants, or the end. It is given a Unit, and answers whether
// it is wanted, or a Block, and answers with all bits of each wanted one set.
template <class Predicate>
const wchar_t* FindUnit(const wchar_t* from, const wchar_t* end, Predicate isWanted) {
    for (; end - from >= kBlockUnits; from += kBlockUnits) {
        Block block;
        std::memcpy(&block, from, sizeof(block));
        const std::ptrdiff_t plain = FirstOf(std::bit_cast<Block>(isWanted(block)));
        if (plain < kBlockUnits) return from + plain;
    }
    while (from != end && !isWanted(static_cast<Unit>(*from))) ++from;
    return from;
}

// The units before a text's zero, which may stand at an odd place, as in a packed record. Looks at aligned
// blocks, of which one that holds a unit of the text can be read whole; what it holds besides the text does
// not count.
inline std::size_t TextLength(const wchar_t* text) noexcept {
#ifdef _WIN32
    const auto place = reinterpret_cast<std::uintptr_t>(text) % sizeof(__m128i);
    if (place % sizeof(wchar_t) != 0) return std::wstring_view(text).size();
    const auto* block = reinterpret_cast<const __m128i*>(reinterpret_cast<std::uintptr_t>(text) - place);
    const auto zeros = [&block] {
        return static_cast<unsigned>(
            _mm_movemask_epi8(_mm_cmpeq_epi16(_mm_load_si128(block), _mm_setzero_si128())));
    };
    if (const unsigned first = zeros() >> place)
        return static_cast<std::size_t>(std::countr_zero(first)) / sizeof(wchar_t);
    unsigned found = 0;
    while (found == 0) {
        ++block;
        found = zeros();
    }
    const auto* const bytes = reinterpret_cast<const char*>(block) + std::countr_zero(found);
    return static_cast<std::size_t>(bytes - reinterpret_cast<const char*>(text)) / sizeof(wchar_t);
#else
    return std::wstring_view(text).size();
#endif
}

}  // namespace ql
