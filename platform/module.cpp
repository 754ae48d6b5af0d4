#include "platform/module.h"

#include "platform/system_text.h"

// No header of the system declares it.
extern "C" BOOLEAN NTAPI RtlDllShutdownInProgress();

namespace {

// What this code was linked into, when that is a DLL; null stands for the program.
HMODULE g_ownModule = nullptr;

}  // namespace

#if defined(QL_UTIL_BUILD)
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) g_ownModule = module;
    return TRUE;
}
#endif

namespace ql {

bool ProcessIsEnding() noexcept {
    return ::RtlDllShutdownInProgress() != FALSE;
}

std::wstring OwnModulePath() {
    return SystemText(
        [](wchar_t* text, DWORD size) { return ::GetModuleFileNameW(g_ownModule, text, size); });
}

}  // namespace ql
