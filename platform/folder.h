#pragma once

#include "platform/win32.h"

namespace ql {

// Whether there is a folder of that name.
inline bool IsFolder(const wchar_t* path) noexcept {
    const DWORD attributes = ::GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace ql
