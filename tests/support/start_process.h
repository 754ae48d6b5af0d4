#pragma once

#include <string>

#include "platform/unique_handle.h"

// None when it cannot be started. What it prints goes to the output, which can be inherited then.
inline ql::UniqueKernelHandle StartProcess(std::wstring line, HANDLE output = nullptr) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = output ? STARTF_USESTDHANDLES : 0;
    startup.hStdOutput = output;
    PROCESS_INFORMATION process = {};
    ::CreateProcessW(nullptr, line.data(), nullptr, nullptr, output != nullptr, 0, nullptr, nullptr, &startup,
                     &process);
    const ql::UniqueKernelHandle thread(process.hThread);
    return ql::UniqueKernelHandle(process.hProcess);
}
