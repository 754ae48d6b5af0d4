#pragma once

#include <cstdint>

#include "platform/win32.h"

namespace ql {

// The place from which the next call reads or writes. It belongs to the handle: one thread at a time. A place
// that is given with the call itself (OVERLAPPED) does without, but has the system tell of the end of the
// call once more, which can cost as much as the call.
inline bool MoveTo(HANDLE file, std::int64_t position) noexcept {
    LARGE_INTEGER wanted;
    wanted.QuadPart = position;
    return ::SetFilePointerEx(file, wanted, nullptr, FILE_BEGIN) != FALSE;
}

inline bool EndAt(HANDLE file, std::int64_t size) noexcept {
    return MoveTo(file, size) && ::SetEndOfFile(file);
}

}  // namespace ql
