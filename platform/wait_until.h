#pragma once

#include <chrono>

#include "platform/win32.h"

namespace ql {

// Looks again and again whether it is so, for that long at most. The time is measured: the system may sleep
// far longer than it is asked to.
template <class Condition>
void WaitUntil(const Condition& isSo, std::chrono::milliseconds most) noexcept {
    const auto end = std::chrono::steady_clock::now() + most;
    while (!isSo() && std::chrono::steady_clock::now() < end) ::Sleep(1);
}

}  // namespace ql
