#pragma once

#include "platform/win32.h"

namespace ql {

// Gives the calling thread its last error back at the end of a scope.
class LastErrorKept {
  public:
    LastErrorKept() noexcept = default;
    ~LastErrorKept() { ::SetLastError(error_); }
    LastErrorKept(const LastErrorKept&) = delete;
    LastErrorKept& operator=(const LastErrorKept&) = delete;

  private:
    const DWORD error_ = ::GetLastError();
};

}  // namespace ql
