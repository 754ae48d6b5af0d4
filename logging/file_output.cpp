#include <new>

#include "logging/log_file.h"
#include "logging/log_outputs.h"

void QLLogger::InitializeLog(const wchar_t* fileName, QLLogLevel mask) noexcept {
    try {
        InitializeLog(std::make_shared<QLLoggerOutputs::FileOutput>(fileName), mask);
    } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch): an output less, as the header says
    }
}

namespace QLLoggerOutputs {

FileOutput::FileOutput(const wchar_t* fileName) : file_(std::make_shared<LogFile>()) {
    file_->Open(fileName, LogFile::Start::kEmpty);
}

FileOutput::FileOutput(const FileOutput&) = default;

FileOutput& FileOutput::operator=(const FileOutput&) = default;

void FileOutput::Write(QLLogLevel, const wchar_t* text) {
    if (text) file_->Append({text}, LogFile::Reach::kBuffer);
}

void FileOutput::Flush() {
    file_->Flush();
}

void FileOutput::Close() {
    file_->Close();
}

// The last of its copies closes the file.
FileOutput::~FileOutput() = default;

}  // namespace QLLoggerOutputs
