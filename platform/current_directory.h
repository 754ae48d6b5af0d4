#pragma once

#include "platform/system_text.h"

namespace ql {

// The process's current directory, of any length; empty when the system does not tell.
inline std::wstring CurrentDirectory() {
    return SystemText([](wchar_t* text, DWORD size) { return ::GetCurrentDirectoryW(size, text); });
}

}  // namespace ql
