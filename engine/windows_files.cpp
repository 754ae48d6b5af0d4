#include "engine/windows_files.h"

#include <utility>

#include "platform/file_position.h"
#include "platform/full_path_name.h"
#include "platform/long_number.h"

namespace ql::zip {
namespace {

constexpr std::uint64_t kMaxTransfer = 1u << 30;

// The longest that the system knows.
constexpr DWORD kLongestPath = 32768;

FILETIME Split(std::uint64_t ticks) {
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

bool IsNotThere(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME;
}

// No patience makes a file of it.
bool IsFolder(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    const bool isFolder = attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DIRECTORY;
    ::SetLastError(ERROR_ACCESS_DENIED);
    return isFolder;
}

// The class that the record belongs to is the system's cheap way to it.
template <class Record>
Record Ask(HANDLE file, FILE_INFO_BY_HANDLE_CLASS what) {
    Record record;
    Require(::GetFileInformationByHandleEx(file, what, &record, sizeof record), Result::kReadFailed);
    return record;
}

}  // namespace

WindowsInput::WindowsInput(const std::wstring& path, const OpenFailures& failures, Patience& patience) {
    constexpr DWORD kAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const bool isOpen = patience.Until([&] {
        file_.reset(::CreateFileW(path.c_str(), GENERIC_READ, kAll, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file_ && ::GetLastError() == ERROR_ACCESS_DENIED && IsFolder(path))
            ::SetLastError(ERROR_DIRECTORY);
        return static_cast<bool>(file_);
    });
    if (!isOpen) throw Failure{IsNotThere(::GetLastError()) ? failures.missing : failures.closed};
}

std::uint64_t WindowsInput::Size() const {
    return static_cast<std::uint64_t>(
        Ask<FILE_STANDARD_INFO>(file_.get(), FileStandardInfo).EndOfFile.QuadPart);
}

FileState WindowsInput::State() const {
    const auto basic = Ask<FILE_BASIC_INFO>(file_.get(), FileBasicInfo);
    return {Size(), basic.CreationTime.QuadPart, basic.LastWriteTime.QuadPart, basic.ChangeTime.QuadPart};
}

std::wstring WindowsInput::TruePath() const {
    std::wstring path(kLongestPath, L'\0');
    const DWORD size = ::GetFinalPathNameByHandleW(file_.get(), path.data(), kLongestPath, 0);
    Require(size > 0 && size < kLongestPath, Result::kCannotOpen);
    path.resize(size);
    return path;
}

std::size_t WindowsInput::ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) {
    std::size_t done = 0;
    Require(MoveTo(file_.get(), static_cast<std::int64_t>(offset)), Result::kReadFailed);
    while (done < size) {
        const DWORD want = static_cast<DWORD>(std::min<std::uint64_t>(size - done, kMaxTransfer));
        DWORD got = 0;
        Require(::ReadFile(file_.get(), into + done, want, &got, nullptr), Result::kReadFailed);
        done += got;
        if (got < want) break;  // the end of the file
    }
    return done;
}

DosTime DosTimeOf(const FILETIME& time) {
    SYSTEMTIME utc, local;
    if (!::FileTimeToSystemTime(&time, &utc) || !::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
        return ToDosTime({});
    return ToDosTime({local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond});
}

std::optional<FILETIME> FileTimeOf(DosTime time) {
    const CalendarTime t = FromDosTime(time);
    const auto word = [](int value) { return static_cast<WORD>(value); };
    const SYSTEMTIME local{word(t.year), word(t.month),  word(0),        word(t.day),
                           word(t.hour), word(t.minute), word(t.second), word(0)};
    SYSTEMTIME utc;
    FILETIME result;
    if (!::TzSpecificLocalTimeToSystemTime(nullptr, &local, &utc) || !::SystemTimeToFileTime(&utc, &result))
        return std::nullopt;
    return result;
}

DosTime DosTimeNow() {
    FILETIME now;
    ::GetSystemTimeAsFileTime(&now);
    return DosTimeOf(now);
}

std::int64_t TimeNow() {
    FILETIME now;
    ::GetSystemTimeAsFileTime(&now);
    return static_cast<std::int64_t>(Join(now.dwHighDateTime, now.dwLowDateTime));
}

DosTime TimeOf(const Entry& entry) {
    return entry.utcTime != 0 ? DosTimeOf(Split(entry.utcTime)) : entry.time;
}

std::optional<FILETIME> ExactTimeOf(const Entry& entry) {
    if (entry.utcTime != 0) return Split(entry.utcTime);
    return FileTimeOf(entry.time);
}

std::wstring LiteralPath(const std::wstring& path) {
    std::wstring full = FullPathName(path);
    Require(!full.empty(), Result::kCannotOpen);
    if (full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\")) return full;
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + full.substr(2) : L"\\\\?\\" + full;
}

bool MakeFolders(const std::wstring& folder) {
    std::size_t end = folder.size();
    // Up to the first folder that can be made, then down again.
    while (!::CreateDirectoryW(folder.substr(0, end).c_str(), nullptr)) {
        if (::GetLastError() != ERROR_PATH_NOT_FOUND) break;
        end = folder.rfind(L'\\', end - 1);
        if (end == std::wstring::npos || end == 0) return false;
    }
    while (end < folder.size()) {
        end = std::min(folder.find(L'\\', end + 1), folder.size());
        ::CreateDirectoryW(folder.substr(0, end).c_str(), nullptr);
    }
    const auto facts = FileFacts(folder, Result::kCannotCreate);
    return facts && facts->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY;
}

std::optional<WIN32_FILE_ATTRIBUTE_DATA> FileFacts(const std::wstring& path, Result otherwise) {
    WIN32_FILE_ATTRIBUTE_DATA facts;
    if (::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &facts)) return facts;
    Require(IsNotThere(::GetLastError()), otherwise);
    return std::nullopt;
}

}  // namespace ql::zip
