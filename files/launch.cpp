#include "files/launch.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/failure.h"
#include "platform/unique_handle.h"
#include "platform/win32.h"

// The name ends where the C run time sees its end: at the closing quote, else at the first blank or tab.
RWWString GetOwnCommandLine() {
    std::wstring_view line = ::GetCommandLineW();
    bool isQuoted = false;
    std::size_t end = 0;
    for (; end < line.size() && (isQuoted || (line[end] != L' ' && line[end] != L'\t')); ++end)
        isQuoted = isQuoted != (line[end] == L'"');
    line.remove_prefix(end);
    line.remove_prefix(std::min(line.find_first_not_of(L" \t"), line.size()));
    return RWWString(line);
}

bool LaunchApplication(const QLCmdLine& cmdLine, unsigned short showCommand) {
    return ql::FailureIfThrown(false, [&] {
        // In memory of its own: the system may change it.
        std::wstring command =
            L'"' + cmdLine.GetPathAndFileName().str() + L"\" " + cmdLine.GetSwitches().str();
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        startup.dwXSize = static_cast<DWORD>(::GetSystemMetrics(SM_CXSCREEN));
        startup.dwYSize = static_cast<DWORD>(::GetSystemMetrics(SM_CYSCREEN));
        startup.dwFlags = STARTF_USESHOWWINDOW;
        startup.wShowWindow = showCommand;
        PROCESS_INFORMATION process = {};
        if (!::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, NORMAL_PRIORITY_CLASS,
                              nullptr, nullptr, &startup, &process)) {
            return false;
        }
        const ql::UniqueKernelHandle processHandle(process.hProcess), threadHandle(process.hThread);
        ::WaitForInputIdle(processHandle.get(), INFINITE);
        return true;
    });
}
