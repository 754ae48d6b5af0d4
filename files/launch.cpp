#include "files/launch.h"

#include <string>

#include "files/program_name.h"
#include "names/name_access.h"
#include "platform/failure.h"
#include "platform/unique_handle.h"
#include "platform/win32.h"

RWWString GetOwnCommandLine() {
    return ql::FailureIfThrown({}, [] { return RWWString(ql::WithoutProgramName(::GetCommandLineW())); });
}

bool LaunchApplication(const QLCmdLine& cmdLine, unsigned short showCommand) {
    return ql::FailureIfThrown(false, [&] {
        // In memory of its own: the system may change it.
        std::wstring command = L'"' + ql::NameAccess::PathAndFileName(cmdLine) + L"\" ";
        command += ql::NameAccess::Switches(cmdLine);
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
