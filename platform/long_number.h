#pragma once

#include <cstdint>

#include "platform/win32.h"

namespace ql {

// A number of 64 bits that the system tells in two halves.
constexpr std::uint64_t Join(DWORD high, DWORD low) noexcept {
    return std::uint64_t{high} << 32 | low;
}

}  // namespace ql
