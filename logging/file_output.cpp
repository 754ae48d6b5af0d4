#include "logging/log_file.h"
#include "logging/log_outputs.h"
#include "platform/failure.h"

void QLLogger::InitializeLog(const wchar_t* fileName, QLLogLevel mask) noexcept {
    ql::Completes([&] { InitializeLog(std::make_shared<QLLoggerOutputs::FileOutput>(fileName), mask); });
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
