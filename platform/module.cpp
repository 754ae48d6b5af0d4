#include "platform/module.h"

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
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        DWORD capacity = static_cast<DWORD>(path.size());
        DWORD length = ::GetModuleFileNameW(g_ownModule, path.data(), capacity);
        if (length < capacity) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

}  // namespace ql
