#include <shlobj.h>
#include <time.h>

#include <algorithm>
#include <cwchar>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "tests/native/fake_names.h"
#include "tests/native/system_memory.h"

namespace {

std::mutex g_lock;
std::map<std::wstring, std::wstring, fake::NameLess> g_environment;

// The length of a text that fits with its zero, which is then copied; else the room that it needs.
DWORD CopyWhole(const std::wstring& text, wchar_t* out, DWORD capacity) {
    const auto length = static_cast<DWORD>(text.size());
    if (length >= capacity) return length + 1;
    *std::copy(text.begin(), text.end(), out) = L'\0';
    return length;
}

// The real file system is drive Z:.
std::wstring WindowsPath(const std::filesystem::path& path) {
    const std::u16string units = path.u16string();
    std::wstring windows = L"Z:" + std::wstring(units.begin(), units.end());
    std::replace(windows.begin(), windows.end(), L'/', L'\\');
    return windows;
}

// A reference to an unknown name stays, and its second percent sign may begin another one.
std::wstring Expanded(std::wstring_view text) {
    std::wstring result;
    while (!text.empty()) {
        const bool mayBegin = text.front() == L'%';
        const std::size_t end = text.find(L'%', mayBegin);
        const auto value = g_environment.find(std::wstring(text.substr(mayBegin, end - mayBegin)));
        const bool isKnown = mayBegin && end != text.npos && value != g_environment.end();
        result += isKnown ? value->second : text.substr(0, end);
        text.remove_prefix(std::min(isKnown ? end + 1 : end, text.size()));
    }
    return result;
}

}  // namespace

BOOL SetEnvironmentVariableW(const wchar_t* name, const wchar_t* value) {
    const fake::SystemMemory own;
    const std::lock_guard guard(g_lock);
    g_environment.erase(name);
    if (value) g_environment.emplace(name, value);
    return TRUE;
}

DWORD ExpandEnvironmentStringsW(const wchar_t* text, wchar_t* out, DWORD capacity) {
    const fake::SystemMemory own;
    const std::lock_guard guard(g_lock);
    const std::wstring expanded = Expanded(text);
    CopyWhole(expanded, out, capacity);
    return static_cast<DWORD>(expanded.size() + 1);
}

DWORD GetCurrentDirectoryW(DWORD capacity, wchar_t* directory) {
    return CopyWhole(WindowsPath(std::filesystem::current_path()), directory, capacity);
}

DWORD GetModuleFileNameW(HMODULE, wchar_t* path, DWORD capacity) {
    const std::wstring program = WindowsPath(std::filesystem::read_symlink("/proc/self/exe"));
    return std::min(CopyWhole(program, path, capacity), capacity);
}

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode) {
    if (!path || !mode) return nullptr;
    return std::fopen(std::filesystem::path(path).c_str(), std::filesystem::path(mode).c_str());
}

HRESULT SHGetFolderPathW(HWND, int folder, HANDLE, DWORD, wchar_t* path) {
    const bool isPersonal = folder == (CSIDL_PERSONAL | CSIDL_FLAG_CREATE);
    std::wcscpy(path, isPersonal ? L"C:\\users\\someone\\Documents" : L"C:\\users\\Public\\Documents");
    return S_OK;
}

int MessageBoxW(HWND, const wchar_t* text, const wchar_t* title, UINT) {
    return std::fprintf(stderr, "%ls: %ls\n", title, text);
}

// There is one module, the program, and it stays.
BOOL GetModuleHandleExW(DWORD, const wchar_t*, HMODULE* module) {
    *module = nullptr;
    return TRUE;
}

BOOL GetVersionExW(OSVERSIONINFOW* version) {
    *version = {sizeof *version, 6, 1, 7601, VER_PLATFORM_WIN32_NT, L"Service Pack 1"};
    return TRUE;
}

// The day alone: nothing that builds natively asks for the time of day.
void GetLocalTime(SYSTEMTIME* now) {
    const time_t clock = time(nullptr);
    const tm local = *localtime(&clock);
    const auto word = [](int value) { return static_cast<WORD>(value); };
    *now = {word(local.tm_year + 1900), word(local.tm_mon + 1), word(local.tm_wday), word(local.tm_mday)};
}
