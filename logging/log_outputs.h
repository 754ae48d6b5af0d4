#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "logging/logger.h"
#include "names/file_name.h"
#include "platform/export.h"

struct _FILETIME;  // NOLINT(bugprone-reserved-identifier): the system's own name

namespace QLLoggerOutputs {

class LogFile;
struct RollingLog;

// Both outputs write UTF-8 with a byte-order mark and CR LF line ends; a lone surrogate becomes U+FFFD.
// Others may read the file meanwhile, but neither write nor rename it. When the disk is full, entries wait in
// a buffer of 64 KiB and are then dropped whole and counted until there is room again; the next entry then
// begins with a line that says how many. Copies share the file and all else: closing one closes it for all.
// Nothing of them throws: an output for which there is no memory is not open.

// A plain file, made afresh. Lines are buffered; Flush hands them to the system, which is all that it does.
class QL_API FileOutput : public IBufferedLogOutput {
  public:
    // A file that cannot be opened is not reported; writes then do nothing.
    explicit FileOutput(const wchar_t* fileName) noexcept;

    // A copy shares the file.
    FileOutput(const FileOutput&) noexcept;
    FileOutput& operator=(const FileOutput&) noexcept;

    bool IsOpen() const noexcept;  // by the thread that writes, or before the output is registered

    void Write(QLLogLevel level, const wchar_t* text) noexcept override;  // any level; null does nothing
    void Flush() noexcept override;
    void Close() noexcept override;
    ~FileOutput() override;

  private:
    std::shared_ptr<LogFile> file_;
};

// A log for long runs. It begins with a header that tells program, system and user; each entry is followed by
// a line of asterisks and handed to the system at once. A file that would grow beyond its limit becomes
// backup 1 ("Server.log": "Server1.bak"), the older ones move up and the oldest goes away. A backup keeps the
// time of its last entry. A file that exists is continued. The name is read as a QLFileName reads it, and
// from the folder that is current when the output is made.
//
// Kept on purpose:
//  - the limit is approximate: the position in bytes is added to the length of the text in characters;
//  - an oldest backup that cannot be deleted ends the log for good rather than losing files;
//  - when a file cannot be renamed, the main file is emptied all the same;
//  - the flush does not wait for the disk itself. What is written at the end of a process that did not call
//    CloseLogs no longer makes the log roll. Where the end cuts a roll-over short, the log goes on in the
//    main file; should the system still hold that, in backup 1, which is then the newest of the files (and is
//    made even where no backups are kept). Failures go to the debugger and to the event log, with the
//    software's name as their source.
class QL_API RollingFileOutput : public ILogOutput {
  public:
    // Null texts are empty. The limit is in bytes and at least 1000; with 0 backups or fewer none is kept.
    // Each roll-over looks at as many names as there may be backups.
    RollingFileOutput(const wchar_t* fileName, const wchar_t* softwareName, const wchar_t* buildDate,
                      const wchar_t* version, int backupCount, int maxSize, unsigned long eventId) noexcept;
    RollingFileOutput(const RollingFileOutput&) noexcept;
    RollingFileOutput& operator=(const RollingFileOutput&) noexcept;

    bool IsOpen() const noexcept;  // by the thread that writes, or before the output is registered

    // For the next header. By any thread. Without memory the former text stays.
    void SetBuildDate(const wchar_t* buildDate) noexcept;
    void SetVersionString(const wchar_t* version) noexcept;

    void Write(QLLogLevel level, const wchar_t* text) noexcept override;  // any level; null does nothing
    void Flush() noexcept override;
    void Close() noexcept override;
    ~RollingFileOutput() override;

  protected:
    // These five throw std::bad_alloc when memory is short; the others never do.
    void WriteHeader();
    void BackupAndStartAnew();
    void SetBackupFileName(QLFileName& name, int number);    // of number 0 and less, the main file's
    _FILETIME GetFileLastWriteTime(const QLFileName& name);  // zero when the system does not tell
    void SetFileLastWriteTime(const QLFileName& name, const _FILETIME& time);
    void ReportSystemError(const wchar_t* message) noexcept;

  private:
    bool IsFullFor(std::wstring_view entry) const noexcept;
    bool DeleteOldestBackup();
    void ShiftBackups(const _FILETIME& timeOfMain);
    bool Rename(const std::wstring& from, const std::wstring& to, const _FILETIME& time);
    void Open(bool anew);
    void Resume() noexcept;

    std::shared_ptr<RollingLog> log_;
};

}  // namespace QLLoggerOutputs
