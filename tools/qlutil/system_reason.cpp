#include "tools/qlutil/system_reason.h"

#include <algorithm>
#include <iterator>

#include "platform/win32.h"

namespace {

struct Reason {
    DWORD error;
    const wchar_t* text;
};

constexpr Reason kReasons[] = {
    {ERROR_FILE_NOT_FOUND, L"no such file"},
    {ERROR_PATH_NOT_FOUND, L"no such folder"},
    {ERROR_BAD_NETPATH, L"the server cannot be reached"},
    {ERROR_BAD_NET_NAME, L"the server has no such share"},
    {ERROR_ACCESS_DENIED, L"access is denied: read-only, a folder, or not this user's"},
    {ERROR_SHARING_VIOLATION, L"in use by another program"},
    {ERROR_LOCK_VIOLATION, L"in use by another program"},
    {ERROR_WRITE_PROTECT, L"the disk is write-protected"},
    {ERROR_NOT_READY, L"the drive is not ready"},
    {ERROR_DISK_FULL, L"the disk is full"},
    {ERROR_HANDLE_DISK_FULL, L"the disk is full"},
    {ERROR_FILE_TOO_LARGE, L"the file is too large for the disk"},
    {ERROR_INVALID_NAME, L"the file system takes no such name"},
    {ERROR_DIRECTORY, L"the file system takes no such name"},
    {ERROR_FILENAME_EXCED_RANGE, L"the name is too long"},
};

}  // namespace

std::wstring ReasonOf(unsigned long error) {
    const auto row = std::ranges::find(kReasons, error, &Reason::error);
    return row != std::end(kReasons) ? row->text : L"the system's error " + std::to_wstring(error);
}

unsigned long ErrorOfOpening(const wchar_t* path, unsigned long access, unsigned long share) {
    const HANDLE file = ::CreateFileW(path, access, share, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return ::GetLastError();
    ::CloseHandle(file);
    return ERROR_SUCCESS;
}

std::wstring WhyNotOpened(unsigned long error) {
    return error == ERROR_SUCCESS ? L"in use by another program until now" : ReasonOf(error);
}
