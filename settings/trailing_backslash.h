#pragma once

#include "rw/wide_string.h"

namespace ql {

// Folder preferences may be stored either way; one backslash goes, no more.
inline RWWString WithoutTrailingBackslash(RWWString folder) {
    const std::size_t length = folder.length();
    if (length > 0 && folder[length - 1] == L'\\') folder.resize(length - 1);
    return folder;
}

}  // namespace ql
