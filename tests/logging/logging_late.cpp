// A library that logs for the first time when it is told that the process ends, to the file that QL_LOG
// names.
#include <string>

#include "logging/logger.h"
#include "platform/win32.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    if (reason != DLL_PROCESS_DETACH) return TRUE;
    constexpr int kLines = 20'000;
    wchar_t file[MAX_PATH] = {};
    ::GetEnvironmentVariableW(L"QL_LOG", file, MAX_PATH);
    QLLogger::InitializeLog(file, QLLOG_INFO);
    for (int i = 0; i < kLines; ++i) QLLogger::PutMessage(QLLOG_INFO, (std::to_wstring(i) + L'\n').c_str());
    return TRUE;
}
