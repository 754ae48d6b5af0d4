#include "engine/windows_files.h"

#include <utility>

namespace ql::zip {
namespace {

constexpr wchar_t kPendingSuffix[] = L".~new";
constexpr std::uint64_t kMaxTransfer = 1u << 30;

OVERLAPPED At(std::uint64_t offset) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

std::uint64_t Join(DWORD high, DWORD low) {
    return static_cast<std::uint64_t>(high) << 32 | low;
}

}  // namespace

WindowsInput::WindowsInput(const std::wstring& path, Result missing, Result closed)
    : file_(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {
    if (file_) return;
    const DWORD error = ::GetLastError();
    const bool isMissing =
        error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME;
    throw Failure{isMissing ? missing : closed};
}

std::uint64_t WindowsInput::Size() const {
    LARGE_INTEGER size;
    Require(::GetFileSizeEx(file_.get(), &size), Result::kReadFailed);
    return static_cast<std::uint64_t>(size.QuadPart);
}

FileIdentity WindowsInput::Identity() const {
    BY_HANDLE_FILE_INFORMATION facts;
    Require(::GetFileInformationByHandle(file_.get(), &facts), Result::kReadFailed);
    return {facts.dwVolumeSerialNumber, Join(facts.nFileIndexHigh, facts.nFileIndexLow),
            Join(facts.nFileSizeHigh, facts.nFileSizeLow),
            Join(facts.ftLastWriteTime.dwHighDateTime, facts.ftLastWriteTime.dwLowDateTime)};
}

std::size_t WindowsInput::ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        OVERLAPPED place = At(offset + done);
        const DWORD want = static_cast<DWORD>(std::min<std::uint64_t>(size - done, kMaxTransfer));
        DWORD got = 0;
        if (!::ReadFile(file_.get(), into + done, want, &got, &place))
            Require(::GetLastError() == ERROR_HANDLE_EOF, Result::kReadFailed);
        done += got;
        if (got < want) break;  // the end of the file
    }
    return done;
}

PendingFile::PendingFile(std::wstring path, std::wstring finalPath, DWORD disposition)
    : path_(std::move(path)), finalPath_(std::move(finalPath)) {
    file_.reset(
        ::CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file_) return;
    pending_ = false;
    throw Failure{::GetLastError() == ERROR_SHARING_VIOLATION ? Result::kBusy : Result::kCannotCreate};
}

PendingFile PendingFile::Replacing(const std::wstring& path) {
    return PendingFile(path + kPendingSuffix, path, CREATE_ALWAYS);
}

PendingFile PendingFile::Fresh(const std::wstring& path) {
    return PendingFile(path, path, CREATE_NEW);
}

PendingFile::PendingFile(PendingFile&& other) noexcept
    : path_(std::move(other.path_)),
      finalPath_(std::move(other.finalPath_)),
      file_(std::move(other.file_)),
      pending_(std::exchange(other.pending_, false)) {}

PendingFile::~PendingFile() {
    if (!pending_) return;
    file_.reset();
    ::DeleteFileW(path_.c_str());
}

void PendingFile::WriteAt(std::uint64_t offset, const std::uint8_t* data, std::size_t size) {
    OVERLAPPED place = At(offset);
    DWORD written = 0;
    Require(::WriteFile(file_.get(), data, static_cast<DWORD>(size), &written, &place) && written == size,
            Result::kWriteFailed);
}

void PendingFile::SetTime(DosTime time) {
    if (const auto fileTime = FileTimeOf(time)) ::SetFileTime(file_.get(), nullptr, nullptr, &*fileTime);
}

void PendingFile::Flush() {
    Require(::FlushFileBuffers(file_.get()), Result::kWriteFailed);
}

void PendingFile::Commit() {
    file_.reset();
    constexpr DWORD kFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    Require(path_ == finalPath_ || ::MoveFileExW(path_.c_str(), finalPath_.c_str(), kFlags),
            Result::kNotReplaced);
    pending_ = false;
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

std::wstring LiteralPath(const std::wstring& path) {
    std::wstring full(::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(::GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
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
    const auto facts = FileFacts(folder);
    return facts && facts->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY;
}

std::optional<WIN32_FILE_ATTRIBUTE_DATA> FileFacts(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA facts;
    if (!::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &facts)) return std::nullopt;
    return facts;
}

}  // namespace ql::zip
