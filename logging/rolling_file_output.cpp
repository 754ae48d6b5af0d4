#include <algorithm>
#include <array>
#include <ctime>

#include "logging/event_log.h"
#include "logging/log_ending.h"
#include "logging/log_file.h"
#include "logging/log_outputs.h"
#include "logging/os_facts.h"
#include "logging/os_names.h"
#include "platform/critical_section.h"
#include "platform/failure.h"
#include "platform/full_path_name.h"
#include "platform/unique_handle.h"
#include "platform/win32.h"

namespace QLLoggerOutputs {

namespace {

constexpr std::uint32_t kNoLine = 0;
constexpr int kSmallestLimit = 1000;
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

bool Exists(const std::wstring& path) {
    return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

ql::UniqueFileHandle OpenForTimes(const wchar_t* path, DWORD access, DWORD share) {
    return ql::UniqueFileHandle(
        ::CreateFileW(path, access, share, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

FILETIME LastWriteTimeOf(const wchar_t* path) {
    const ql::UniqueFileHandle file = OpenForTimes(path, GENERIC_READ, FILE_SHARE_READ);
    FILETIME time = {};
    if (file && !::GetFileTime(file.get(), nullptr, nullptr, &time)) return {};
    return time;
}

void SetLastWriteTimeOf(const wchar_t* path, const FILETIME& time) {
    const ql::UniqueFileHandle file = OpenForTimes(path, GENERIC_WRITE, FILE_SHARE_WRITE);
    if (file) ::SetFileTime(file.get(), nullptr, nullptr, &time);
}

// The user's or the machine's.
template <class Ask>
std::wstring NameBy(Ask ask) {
    std::array<wchar_t, 257> name = {};
    DWORD length = name.size();
    ask(name.data(), &length);
    return name.data();
}

std::wstring OsDescription() {
    const auto facts = ql::ReadOsFacts();
    return facts ? ql::DescribeOs(*facts) : std::wstring();
}

// The file of a later roll-over is this one, whatever folder is current by then. Its name stays as it stands.
std::wstring FromItsRoot(const std::wstring& path) {
    const std::size_t drive = path.find(L':') == 1 ? 2 : 0;
    const std::size_t name = std::max(path.find_last_of(L"\\/") + 1, drive);
    std::wstring folder = ql::FullPathName(name > 0 ? path.substr(0, name) : L".");
    if (path.empty() || folder.empty()) return path;
    if (folder.back() != L'\\') folder += L'\\';
    return folder + path.substr(name);
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
    RollingLog(const QLFileName& name, const wchar_t* software, int backups, int limit, std::uint32_t event)
        : mainPath(FromItsRoot(name.GetPathAndFileName().str())),
          backupStem(mainPath.substr(0, name.HasExtension() ? mainPath.rfind(L'.') : std::wstring::npos)),
          firstBackupPath(PathOf(1)),
          softwareName(software),
          eventId(event),
          maxSize(std::max(limit, kSmallestLimit)),
          backupCount(backups) {}

    LogFile file;
    // Held as texts: a name that is asked for its text answers none when memory ends.
    const std::wstring mainPath;
    const std::wstring backupStem;  // what the numbers of the backups follow
    const std::wstring firstBackupPath;
    const std::wstring softwareName;
    const std::uint32_t eventId;
    const std::int64_t maxSize;
    const int backupCount;
    bool rolling = false;  // when a write finds it true, a roll-over was cut short

    ql::CriticalSection textsLock;
    std::wstring buildDate QL_GUARDED_BY(textsLock);
    std::wstring version QL_GUARDED_BY(textsLock);

    // Number 0 is the main file itself.
    std::wstring PathOf(int number) const {
        return number > 0 ? backupStem + std::to_wstring(number) + L".bak" : mainPath;
    }
};

RollingFileOutput::RollingFileOutput(const wchar_t* fileName, const wchar_t* softwareName,
                                     const wchar_t* buildDate, const wchar_t* version, int backupCount,
                                     int maxSize, unsigned long eventId) noexcept
    : log_(ql::FailureIfThrown(nullptr, [&] {
          return std::make_shared<RollingLog>(OrEmpty(fileName), OrEmpty(softwareName), backupCount, maxSize,
                                              eventId);
      })) {
    if (!log_) return;
    SetBuildDate(buildDate);
    SetVersionString(version);
    ql::Completes([&] { Open(false); });
}

RollingFileOutput::RollingFileOutput(const RollingFileOutput&) noexcept = default;

RollingFileOutput& RollingFileOutput::operator=(const RollingFileOutput&) noexcept = default;

RollingFileOutput::~RollingFileOutput() = default;

void RollingFileOutput::SetBuildDate(const wchar_t* buildDate) noexcept {
    if (!log_) return;
    const ql::CriticalSectionGuard guard(log_->textsLock);
    ql::Completes([&] { log_->buildDate = OrEmpty(buildDate); });
}

void RollingFileOutput::SetVersionString(const wchar_t* version) noexcept {
    if (!log_) return;
    const ql::CriticalSectionGuard guard(log_->textsLock);
    ql::Completes([&] { log_->version = OrEmpty(version); });
}

bool RollingFileOutput::IsOpen() const noexcept {
    return log_ && log_->file.IsOpen();
}

void RollingFileOutput::Write(QLLogLevel, const wchar_t* text) noexcept {
    if (!log_ || !text) return;
    const std::wstring_view entry = text;
    if (log_->rolling) Resume();
    if (!ql::LogIsEnding() && IsFullFor(entry)) ql::Completes([this] { BackupAndStartAnew(); });
    if (log_->rolling) Resume();
    log_->file.Append({entry, kSeparator}, LogFile::Reach::kSystem, ql::LineInHand());
}

bool RollingFileOutput::IsFullFor(std::wstring_view entry) const noexcept {
    const std::int64_t length = static_cast<std::int64_t>(entry.size());
    return log_->file.IsOpen() && log_->file.Size() + length > log_->maxSize;
}

void RollingFileOutput::Flush() noexcept {
    if (log_) log_->file.Flush();
}

void RollingFileOutput::Close() noexcept {
    if (log_) log_->file.Close();
}

void RollingFileOutput::Open(bool anew) {
    const std::wstring& path = log_->mainPath;
    log_->file.Open(path.c_str(), anew ? LogFile::Start::kEmpty : LogFile::Start::kContinue);
    if (!log_->file.IsOpen()) {
        return ReportSystemError(std::wstring(kOpenFailed).append(path).append(1, L'\n').c_str());
    }
    if (anew || log_->file.Size() < kSmallestContent) WriteHeader();
}

// A roll-over that the end of the process, or the end of memory, cut short is not done again, which could
// push out a further backup. The log goes on in the main file or, where the thread that rolled still holds
// that open, in the first backup.
void RollingFileOutput::Resume() noexcept {
    log_->rolling = false;
    Close();
    for (const std::wstring* path : {&log_->mainPath, &log_->firstBackupPath}) {
        if (!log_->file.IsOpen()) log_->file.Open(path->c_str(), LogFile::Start::kContinue);
    }
}

void RollingFileOutput::WriteHeader() {
    if (!IsOpen()) return;
    std::wstring header = L"#Software: " + log_->softwareName;
    {
        const ql::CriticalSectionGuard guard(log_->textsLock);
        header += L"\n#Version: " + log_->version + L"\n#Build date: " + log_->buildDate;
    }
    header += L"\n#OS: " + OsDescription() + L"\n#Username: " + NameBy(::GetUserNameW);
    header += L"\n#Computer name: " + NameBy(::GetComputerNameW) + L"\n#Log-Date: " + LocalTime();
    log_->file.Append({header, kSeparator}, LogFile::Reach::kSystem, kNoLine);
}

void RollingFileOutput::BackupAndStartAnew() {
    if (!log_ || log_->mainPath.empty()) return;
    // Asked of the file that is open: another handle could outlive this thread and hold the main file.
    const FILETIME time = log_->file.LastWriteTime();
    log_->rolling = true;
    Close();
    if (DeleteOldestBackup()) {
        ShiftBackups(time);
        ::OutputDebugStringW(kAnew);
        Open(true);
    }
    log_->rolling = false;
}

void RollingFileOutput::SetBackupFileName(QLFileName& name, int number) {
    if (!log_) throw std::bad_alloc();
    name.SetPathAndFileName(log_->PathOf(number));
    if (name.IsNull()) throw std::bad_alloc();
}

bool RollingFileOutput::DeleteOldestBackup() {
    if (log_->backupCount <= 0) return true;
    const std::wstring oldest = log_->PathOf(log_->backupCount);
    if (!Exists(oldest) || ::DeleteFileW(oldest.c_str())) return true;
    ReportSystemError(std::wstring(kDeleteFailed).append(oldest).append(1, L'\n').c_str());
    return false;
}

void RollingFileOutput::ShiftBackups(const FILETIME& timeOfMain) {
    for (int number = log_->backupCount; number > 0; --number) {
        const std::wstring from = log_->PathOf(number - 1);
        if (!Exists(from)) continue;
        const FILETIME time = number > 1 ? LastWriteTimeOf(from.c_str()) : timeOfMain;
        if (!Rename(from, log_->PathOf(number), time)) return;
    }
}

bool RollingFileOutput::Rename(const std::wstring& from, const std::wstring& to, const FILETIME& time) {
    if (!::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_COPY_ALLOWED)) {
        ReportSystemError(
            std::wstring(kRenameFailed).append(from).append(L"\n\tto: ").append(to).append(1, L'\n').c_str());
        return false;
    }
    if (time.dwLowDateTime && time.dwHighDateTime) SetLastWriteTimeOf(to.c_str(), time);
    return true;
}

FILETIME RollingFileOutput::GetFileLastWriteTime(const QLFileName& name) {
    return LastWriteTimeOf(name.GetPathAndFileName().data());
}

void RollingFileOutput::SetFileLastWriteTime(const QLFileName& name, const FILETIME& time) {
    SetLastWriteTimeOf(name.GetPathAndFileName().data(), time);
}

void RollingFileOutput::ReportSystemError(const wchar_t* message) noexcept {
    ::OutputDebugStringW(OrEmpty(message));
    if (log_) ql::ReportToEventLog(log_->softwareName.c_str(), log_->eventId, OrEmpty(message));
}

}  // namespace QLLoggerOutputs
