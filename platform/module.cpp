#include "platform/module.h"

#include "platform/system_text.h"

// No header of the system declares it.
extern "C" BOOLEAN NTAPI RtlDllShutdownInProgress();

namespace {

HMODULE g_ownModule = nullptr;

}  // namespace

#if defined(QL_UTIL_BUILD)
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) g_ownModule = module;
    return TRUE;
}
#endif

namespace ql {

HMODULE OwnModule() noexcept {
    return g_ownModule;
}

bool ProcessIsEnding() noexcept {
    return ::RtlDllShutdownInProgress() != FALSE;
}

std::wstring OwnModulePath() {
    return SystemText(
        [](wchar_t* text, DWORD size) { return ::GetModuleFileNameW(g_ownModule, text, size); });
}

}  // namespace ql
