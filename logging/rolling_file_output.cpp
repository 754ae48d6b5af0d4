#include <algorithm>
#include <array>
#include <ctime>

#include "logging/event_log.h"
#include "logging/log_ending.h"
#include "logging/log_file.h"
#include "logging/log_outputs.h"
#include "logging/os_description.h"
#include "platform/critical_section.h"
#include "platform/unique_handle.h"
#include "platform/win32.h"

namespace QLLoggerOutputs {

namespace {

constexpr std::int64_t kSmallestLimit = 1000;
// A file below this holds a byte-order mark at most.
constexpr std::int64_t kSmallestContent = 4;
constexpr std::wstring_view kSeparator = L"*****************************************************\n";

constexpr std::wstring_view kOpenFailed =
    L"RollingFileOutput::RollingFileOutput failed to open or create file: ";
constexpr std::wstring_view kDeleteFailed =
    L"RollingFileOutput::BackupAndStartAnew: Failed to delete backup log file: ";
constexpr std::wstring_view kRenameFailed =
    L"RollingFileOutput::BackupAndStartAnew: Failed to rename log file\n\tfrom: ";
constexpr const wchar_t* kAnew =
    L"Quillet Server RollingFileOutput::BackupAndStartAnew, re-creating main log file\n";

const wchar_t* OrEmpty(const wchar_t* text) noexcept {
    return text ? text : L"";
}

bool Exists(const std::wstring& path) noexcept {
    return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

HANDLE OpenForTimes(const std::wstring& path, DWORD access, DWORD share) noexcept {
    return ::CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                         nullptr);
}

// Zero when the system does not tell.
FILETIME GetFileLastWriteTime(const std::wstring& path) noexcept {
    const ql::UniqueFileHandle file(OpenForTimes(path, GENERIC_READ, FILE_SHARE_READ));
    FILETIME time = {};
    if (file && !::GetFileTime(file.get(), nullptr, nullptr, &time)) return {};
    return time;
}

void SetFileLastWriteTime(const std::wstring& path, const FILETIME& time) noexcept {
    const ql::UniqueFileHandle file(OpenForTimes(path, GENERIC_WRITE, FILE_SHARE_WRITE));
    if (file) ::SetFileTime(file.get(), nullptr, nullptr, &time);
}

std::wstring ComputerName() {
    std::array<wchar_t, MAX_COMPUTERNAME_LENGTH + 1> name = {};
    DWORD length = name.size();
    return ::GetComputerNameW(name.data(), &length) ? name.data() : L"";
}

std::wstring UserName() {
    constexpr std::size_t kLongestName = 256;
    std::array<wchar_t, kLongestName + 1> name = {};
    DWORD length = name.size();
    return ::GetUserNameW(name.data(), &length) ? name.data() : L"";
}

std::wstring OsDescription() {
    std::array<wchar_t, 256> text = {};
    GetOSDescription(text.data(), text.size());
    return text.data();
}

// With its line feed; empty when the time cannot be told.
std::wstring LocalTime() {
    std::array<wchar_t, 255> text = {};
    const __time64_t now = ::_time64(nullptr);
    const std::tm* const fields = ::_localtime64(&now);
    if (fields) std::wcsftime(text.data(), text.size(), L"%Y-%m-%d %H:%M:%S\n", fields);
    return text.data();
}

}  // namespace

struct RollingLog {
    LogFile file;
    QLFileName name;
    std::wstring mainPath;
    std::wstring firstBackupPath;
    std::wstring softwareName;
    std::uint32_t eventId = 0;
    std::int64_t maxSize = 0;
    std::int32_t backupCount = 0;
    bool rolling = false;  // when a write finds it true, a roll-over was cut short

    ql::CriticalSection textsLock;
    std::wstring buildDate QL_GUARDED_BY(textsLock);
    std::wstring version QL_GUARDED_BY(textsLock);
};

RollingFileOutput::RollingFileOutput(const wchar_t* fileName, const wchar_t* softwareName,
                                     const wchar_t* buildDate, const wchar_t* version, int backupCount,
                                     int maxSize, unsigned long eventId)
    : log_(std::make_shared<RollingLog>()) {
    log_->name.SetPathAndFileName(OrEmpty(fileName));
    log_->mainPath = PathOf(0);
    log_->firstBackupPath = PathOf(1);
    log_->softwareName = OrEmpty(softwareName);
    log_->eventId = eventId;
    log_->maxSize = std::max<std::int64_t>(maxSize, kSmallestLimit);
    log_->backupCount = backupCount;
    SetBuildDate(buildDate);
    SetVersionString(version);
    Open(false);
}

RollingFileOutput::RollingFileOutput(const RollingFileOutput&) = default;

RollingFileOutput& RollingFileOutput::operator=(const RollingFileOutput&) = default;

RollingFileOutput::~RollingFileOutput() = default;

void RollingFileOutput::SetBuildDate(const wchar_t* buildDate) {
    const ql::CriticalSectionGuard guard(log_->textsLock);
    log_->buildDate = OrEmpty(buildDate);
}

void RollingFileOutput::SetVersionString(const wchar_t* version) {
    const ql::CriticalSectionGuard guard(log_->textsLock);
    log_->version = OrEmpty(version);
}

void RollingFileOutput::Write(QLLogLevel, const wchar_t* text) {
    if (!text) return;
    const std::wstring_view entry = text;
    if (ql::LogIsEnding()) {
        if (log_->rolling) Resume();
    } else if (IsFullFor(entry)) {
        BackupAndStartAnew();
    }
    log_->file.Append({entry, kSeparator}, LogFile::Reach::kSystem);
}

bool RollingFileOutput::IsFullFor(std::wstring_view entry) const {
    const std::int64_t length = static_cast<std::int64_t>(entry.size());
    return log_->file.IsOpen() && log_->file.Size() + length > log_->maxSize;
}

void RollingFileOutput::Flush() {
    log_->file.Flush();
}

void RollingFileOutput::Close() {
    log_->file.Close();
}

void RollingFileOutput::Open(bool anew) {
    const std::wstring& path = log_->mainPath;
    log_->file.Open(path.c_str(), anew ? LogFile::Start::kEmpty : LogFile::Start::kContinue);
    if (!log_->file.IsOpen()) {
        return ReportSystemError(std::wstring(kOpenFailed).append(path).append(1, L'\n').c_str());
    }
    if (anew || log_->file.Size() < kSmallestContent) WriteHeader();
}

// A roll-over that the end of the process cut short is not done again, which could push out a further backup.
// The log goes on in the main file or, where the thread that rolled still holds that open, in the first
// backup.
void RollingFileOutput::Resume() {
    log_->rolling = false;
    Close();
    for (const std::wstring* path : {&log_->mainPath, &log_->firstBackupPath}) {
        if (!log_->file.IsOpen()) log_->file.Open(path->c_str(), LogFile::Start::kContinue);
    }
}

void RollingFileOutput::WriteHeader() {
    if (!log_->file.IsOpen()) return;
    std::wstring header = L"#Software: " + log_->softwareName;
    {
        const ql::CriticalSectionGuard guard(log_->textsLock);
        header += L"\n#Version: " + log_->version + L"\n#Build date: " + log_->buildDate;
    }
    header += L"\n#OS: " + OsDescription() + L"\n#Username: " + UserName();
    header += L"\n#Computer name: " + ComputerName() + L"\n#Log-Date: " + LocalTime();
    log_->file.Append({header, kSeparator}, LogFile::Reach::kSystem);
}

void RollingFileOutput::BackupAndStartAnew() {
    log_->rolling = true;
    Close();
    if (DeleteOldestBackup()) {
        ShiftBackups();
        ::OutputDebugStringW(kAnew);
        Open(true);
    }
    log_->rolling = false;
}

void RollingFileOutput::SetBackupFileName(QLFileName& name, int number) {
    const std::wstring numbered = std::wstring(log_->name.GetName().view()) + std::to_wstring(number);
    name = QLFileName(log_->name.GetPath().data(), numbered.c_str(), L".bak");
}

// Number 0 is the main file itself.
std::wstring RollingFileOutput::PathOf(int number) {
    QLFileName name(log_->name);
    if (number > 0) SetBackupFileName(name, number);
    return std::wstring(name.GetPathAndFileName().view());
}

bool RollingFileOutput::DeleteOldestBackup() {
    if (log_->backupCount <= 0) return true;
    const std::wstring oldest = PathOf(log_->backupCount);
    if (!Exists(oldest) || ::DeleteFileW(oldest.c_str())) return true;
    ReportSystemError(std::wstring(kDeleteFailed).append(oldest).append(1, L'\n').c_str());
    return false;
}

void RollingFileOutput::ShiftBackups() {
    for (int number = log_->backupCount; number > 0; --number) {
        const std::wstring from = PathOf(number - 1);
        if (Exists(from) && !Rename(from, PathOf(number))) return;
    }
}

bool RollingFileOutput::Rename(const std::wstring& from, const std::wstring& to) {
    const FILETIME time = GetFileLastWriteTime(from);
    if (!::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_COPY_ALLOWED)) {
        ReportSystemError(
            std::wstring(kRenameFailed).append(from).append(L"\n\tto: ").append(to).append(1, L'\n').c_str());
        return false;
    }
    if (time.dwLowDateTime && time.dwHighDateTime) SetFileLastWriteTime(to, time);
    return true;
}

void RollingFileOutput::ReportSystemError(const wchar_t* message) {
    ::OutputDebugStringW(OrEmpty(message));
    ql::ReportToEventLog(log_->softwareName.c_str(), log_->eventId, OrEmpty(message));
}

}  // namespace QLLoggerOutputs
