#pragma once

namespace ql {

// True on Windows NT 6.0 (the first version that calls the documents folder plainly "Documents") and later.
bool IsWindows6OrLater() noexcept;

}  // namespace ql
