#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/win32.h"

namespace ql {

// One axis of FitRect: low and high are moved together. Wide enough for any coordinates that a record holds.
inline bool FitSpan(LONG areaLow, LONG areaHigh, LONG& low, LONG& high) noexcept {
    const auto length = std::int64_t{high} - low;
    std::int64_t fitted = low;
    if (fitted + length >= areaHigh) fitted = areaHigh - length - 1;
    fitted = std::max<std::int64_t>(fitted, areaLow);
    if (fitted == low) return false;
    low = static_cast<LONG>(fitted);
    high = static_cast<LONG>(std::min<std::int64_t>(fitted + length, std::numeric_limits<LONG>::max()));
    return true;
}

// Moves the rectangle into the area without changing its size, and answers whether it had to be moved. One
// that touches the right or bottom edge is moved one pixel in, one larger than the area stands at its left or
// top edge.
inline bool FitRect(const RECT& area, RECT& rect) noexcept {
    const bool movedAcross = FitSpan(area.left, area.right, rect.left, rect.right);
    const bool movedDown = FitSpan(area.top, area.bottom, rect.top, rect.bottom);
    return movedAcross || movedDown;
}

}  // namespace ql
