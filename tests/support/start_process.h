#pragma once

#include <string>

#include "platform/unique_handle.h"

// None when it cannot be started.
inline ql::UniqueKernelHandle StartProcess(std::wstring line) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    ::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process);
    const ql::UniqueKernelHandle thread(process.hThread);
    return ql::UniqueKernelHandle(process.hProcess);
}
