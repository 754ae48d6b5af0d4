#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "logging/logger.h"
#include "platform/export.h"

namespace QLLoggerOutputs {

class LogFile;

// Both outputs write UTF-8 with a byte-order mark and CR LF line ends; a lone surrogate becomes U+FFFD. Others may read
// the file meanwhile, but neither write nor rename it. When the disk is full, entries wait in a buffer of 64 KiB and are
// then dropped whole until there is room again. Copies share the file: closing one closes it for all.

// A plain file, made afresh. Lines are buffered; Flush hands them to the system, which is all that it does.
class QL_API FileOutput : public ILogOutput {
  public:
    // A file that cannot be opened is not reported; writes then do nothing.
    explicit FileOutput(const wchar_t* fileName);
    FileOutput(const FileOutput&);
    FileOutput& operator=(const FileOutput&);

    void Write(QLLogLevel level, const wchar_t* text) override;  // any level; null does nothing
    void Flush() override;
    void Close() override;
    ~FileOutput() override;

  private:
    std::shared_ptr<LogFile> file_;
};

// A log for long runs: it begins with a header that tells program, system and user, each entry is followed by a line of
// asterisks and handed to the system at once, and a file that would grow beyond its limit becomes backup 1
// ("Server.log": "Server1.bak"), the older ones moving up and the oldest going away. A backup keeps the time of its last
// entry. An existing file is continued.
//
// Kept on purpose:
//  - the limit is approximate: the position in bytes is added to the length of the text in characters;
//  - an oldest backup that cannot be deleted ends the log for good rather than losing files;
//  - where a file cannot be renamed, the main file is emptied all the same;
//  - the header says "#Log-Date: " and nothing more where the time cannot be told.
// Failures are reported to the debugger and to the event log, under the software's name.
class QL_API RollingFileOutput : public ILogOutput {
  public:
    // Null texts are empty. The limit is in bytes and at least 1000; with 0 backups or fewer none is kept.
    RollingFileOutput(const wchar_t* fileName, const wchar_t* softwareName, const wchar_t* buildDate,
                      const wchar_t* version, int backupCount, int maxSize, unsigned long eventId);
    RollingFileOutput(const RollingFileOutput&);
    RollingFileOutput& operator=(const RollingFileOutput&);

    // For the next header. Not while the log runs: the writer thread reads them.
    void SetBuildDate(const wchar_t* buildDate);
    void SetVersionString(const wchar_t* version);

    void Write(QLLogLevel level, const wchar_t* text) override;  // any level; null does nothing
    void Flush() override;
    void Close() override;
    ~RollingFileOutput() override;

  protected:
    void WriteHeader();
    void BackupAndStartAnew();
    void ReportSystemError(const wchar_t* message);

  private:
    bool DeleteOldestBackup();
    void ShiftBackups();
    std::wstring BackupName(int number) const;  // 0 is the main file
    void ReportOpenFailure();

    std::shared_ptr<LogFile> file_;
    std::wstring buildDate_;
    std::wstring version_;
    std::wstring mainFile_;
    std::wstring softwareName_;
    std::uint32_t eventId_;
    std::int64_t maxSize_;
    std::int32_t backupCount_;
    bool rolling_ = false;
};

}  // namespace QLLoggerOutputs
