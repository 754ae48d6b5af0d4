// logging_loader WAY FILE: loads the library, queues lines and frees it until the system says that it is
// gone.
#include <filesystem>
#include <string>

#include "platform/win32.h"

namespace {

constexpr wchar_t kLibrary[] = L"Quillet.Platform.Native.Util.dll";
constexpr int kLines = 20'000;
constexpr std::uintmax_t kByteOrderMark = 3;

template <class Function>
Function* Find(HMODULE library, const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}

}  // namespace

int wmain(int, wchar_t** argv) {
    const HMODULE library = ::LoadLibraryW(kLibrary);
    const auto initialize =
        Find<void(const wchar_t*, int)>(library, "_ZN8QLLogger13InitializeLogEPKw10QLLogLevel");
    const auto put = Find<void(int, const wchar_t*)>(library, "_ZN8QLLogger10PutMessageE10QLLogLevelPKw");
    const auto flush = Find<void()>(library, "_ZN8QLLogger9FlushLogsEv");
    constexpr int kInfo = 4;
    initialize(argv[2], kInfo);
    for (int i = 0; i < kLines; ++i) {
        put(kInfo, (std::to_wstring(i) + L'\n').c_str());
        if (i > 0) continue;
        flush();
        // Wine may crash when it ends a thread that it has not yet started in full.
        while (std::filesystem::file_size(argv[2]) <= kByteOrderMark) ::Sleep(1);
    }
    for (int i = 0; i < 3; ++i) ::FreeLibrary(library);
    return ::GetModuleHandleW(kLibrary) ? 5 : 4;
}
