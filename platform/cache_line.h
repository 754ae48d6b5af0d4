#pragma once

#include <cstddef>

namespace ql {

// What different threads change lies this far apart, so that none waits for another's cache.
inline constexpr std::size_t kCacheLine = 64;

}  // namespace ql
