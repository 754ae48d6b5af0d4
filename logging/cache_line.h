#pragma once

#include <cstddef>

namespace ql {

// What the callers change and what the writer changes lie this far apart, so that neither waits for the other's
// cache.
inline constexpr std::size_t kCacheLine = 64;

}  // namespace ql
