#pragma once

#include <string>

#include "platform/win32.h"

namespace ql {

// The path from its root on, as the system reads it now, with "." and ".." resolved; empty when the system
// does not tell, as for the empty path.
inline std::wstring FullPathName(const std::wstring& path) {
    std::wstring full(MAX_PATH, L'\0');
    for (bool fits = false; !fits;) {  // another thread may change the current directory in between
        const DWORD size =
            ::GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
        fits = size < full.size();
        full.resize(size);
    }
    return full;
}

}  // namespace ql
