#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace ql {

// wchar_t is signed on some systems, and wider than a UTF-16 unit.
using Unit = std::conditional_t<sizeof(wchar_t) == 2, std::uint16_t, std::uint32_t>;

// A few units side by side, with which the processor calculates at once. What compares blocks answers all
// bits of a unit set, or none.
using Block = Unit __attribute__((vector_size(16)));
inline constexpr std::ptrdiff_t kBlockUnits = sizeof(Block) / sizeof(Unit);

}  // namespace ql
