#pragma once

#include <atomic>

#include "platform/win32.h"

namespace ql::zip {

// How long a call waits until other programs have let go of the files that it needs: two seconds in all,
// unless it is told otherwise, in short steps, whatever the number of files. Any thread of the call may use
// it.
class Patience {
  public:
    Patience() = default;
    explicit Patience(DWORD milliseconds) : all_(milliseconds) {}

    // Tries until it succeeds, or fails for another reason than that a file is in use or refused, or time is
    // up. The system's last error is that of the last try.
    template <class Attempt>
    bool Until(const Attempt& attempt) {
        for (DWORD step = kFirstStep; !attempt(); step = step < kLastStep ? step * 2 : kLastStep) {
            const DWORD error = ::GetLastError();
            const bool mayPass = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
            if (!mayPass || waited_ >= all_) return false;
            ::Sleep(step);
            waited_ += step;
        }
        return true;
    }

  private:
    static constexpr DWORD kFirstStep = 1, kLastStep = 8;
    const DWORD all_ = 2000;
    std::atomic<DWORD> waited_ = 0;  // milliseconds
};

}  // namespace ql::zip
