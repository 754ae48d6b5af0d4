#include <time.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>

#include "tests/native/fake_paths.h"

namespace {

struct HINSTANCE__ {
} g_program;

}  // namespace

DWORD GetModuleFileNameW(HMODULE, wchar_t* path, DWORD capacity) {
    std::error_code error;
    const std::wstring file =
        fake::ToWindowsPath(std::filesystem::read_symlink("/proc/self/exe", error).string());
    const std::size_t length = std::min<std::size_t>(file.size() + 1, capacity);
    std::copy_n(file.c_str(), length, path);
    if (length > file.size()) return static_cast<DWORD>(file.size());
    if (length > 0) path[length - 1] = L'\0';
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return capacity;
}

// There is one module, the program, and it stays.
BOOL GetModuleHandleExW(DWORD, const wchar_t*, HMODULE* module) {
    *module = reinterpret_cast<HMODULE>(&g_program);
    return TRUE;
}

BOOL GetVersionExW(OSVERSIONINFOW* version) {
    if (version->dwOSVersionInfoSize < sizeof *version) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    *version = {sizeof *version, 6, 1, 7601, VER_PLATFORM_WIN32_NT, L"Service Pack 1"};
    return TRUE;
}

void GetLocalTime(SYSTEMTIME* now) {
    timespec clock = {};
    tm local = {};
    clock_gettime(CLOCK_REALTIME, &clock);
    localtime_r(&clock.tv_sec, &local);
    const auto word = [](long value) { return static_cast<WORD>(value); };
    *now = {word(local.tm_year + 1900), word(local.tm_mon + 1),
            word(local.tm_wday),        word(local.tm_mday),
            word(local.tm_hour),        word(local.tm_min),
            word(local.tm_sec),         word(clock.tv_nsec / 1'000'000)};
}
