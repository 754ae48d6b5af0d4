#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "tests/native/fake_paths.h"

namespace fake {

std::string ToUtf8(std::wstring_view text) {
    if (text.empty()) return {};
    const int length = static_cast<int>(text.size());
    std::string bytes(text.size() * 3, '\0');
    const int count = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(),
                                          static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(count));
    return bytes;
}

std::wstring FromUtf8(std::string_view text) {
    if (text.empty()) return {};
    const int length = static_cast<int>(text.size());
    std::wstring units(text.size(), L'\0');
    const int count = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, units.data(), length);
    units.resize(static_cast<std::size_t>(count));
    return units;
}

std::string ToNativePath(std::wstring_view path) {
    if (path.starts_with(L"Z:") || path.starts_with(L"z:")) path.remove_prefix(2);
    std::string native = ToUtf8(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

std::wstring ToWindowsPath(const std::string& path) {
    std::wstring windows = FromUtf8(path);
    std::replace(windows.begin(), windows.end(), L'/', L'\\');
    return L"Z:" + windows;
}

}  // namespace fake

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode) {
    if (!path || !mode) {
        errno = EINVAL;
        return nullptr;
    }
    return std::fopen(fake::ToNativePath(path).c_str(), fake::ToUtf8(mode).c_str());
}

DWORD GetCurrentDirectoryW(DWORD capacity, wchar_t* directory) {
    std::error_code error;
    const std::wstring current = fake::ToWindowsPath(std::filesystem::current_path(error).string());
    if (current.size() >= capacity) return static_cast<DWORD>(current.size() + 1);
    *std::copy(current.begin(), current.end(), directory) = L'\0';
    return static_cast<DWORD>(current.size());
}

BOOL FindClose(HANDLE) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
}
