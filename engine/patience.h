#pragma once

#include <atomic>
#include <chrono>

#include "platform/win32.h"

namespace ql::zip {

// How long a call waits until other programs have let go of the files that it needs: two seconds in all,
// unless it is told otherwise, in short steps, whatever the number of files. Any thread of the call may use
// it.
class Patience {
  public:
    Patience() = default;
    explicit Patience(int milliseconds) : all_(milliseconds) {}

    // Tries until it succeeds, or fails for another reason than that a file is in use or refused, or time is
    // up. The system's last error is that of the last try.
    template <class Attempt>
    bool Until(const Attempt& attempt) {
        while (!attempt()) {
            const DWORD error = ::GetLastError();
            const bool mayPass = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
            if (!mayPass || waited_ >= all_) return false;
            waited_ += Slept();
        }
        return true;
    }

  private:
    using Milliseconds = std::chrono::milliseconds;

    // As long as it was, not as was asked: a system may sleep in far longer steps.
    static Milliseconds::rep Slept() {
        constexpr DWORD kStep = 4;
        const auto begin = std::chrono::steady_clock::now();
        ::Sleep(kStep);
        return std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now() - begin).count();
    }

    const Milliseconds::rep all_ = 2000;
    std::atomic<Milliseconds::rep> waited_ = 0;
};

}  // namespace ql::zip
