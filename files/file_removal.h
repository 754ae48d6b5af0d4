#pragma once

#include "platform/win32.h"

namespace ql {

// Removes a file, a read-only one too. It is made writable only when that is in the way, and only while it is
// tried: the attributes may be those of a link's target.
inline void RemoveFile(const wchar_t* file) noexcept {
    if (::DeleteFileW(file)) return;
    const DWORD attributes = ::GetFileAttributesW(file);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0) return;
    ::SetFileAttributesW(file, attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    if (!::DeleteFileW(file)) ::SetFileAttributesW(file, attributes);
}

}  // namespace ql
