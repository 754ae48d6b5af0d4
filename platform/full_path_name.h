#pragma once

#include "platform/system_text.h"

namespace ql {

// The path from its root on, as the system reads it now, with "." and ".." resolved; empty when the system
// does not tell, as for the empty path.
inline std::wstring FullPathName(const std::wstring& path) {
    return SystemText(
        [&](wchar_t* text, DWORD size) { return ::GetFullPathNameW(path.c_str(), size, text, nullptr); });
}

}  // namespace ql
