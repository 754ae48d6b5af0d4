#include "logging/event_log.h"
#include "logging/log_ending.h"
#include "logging/log_file.h"
#include "logging/log_outputs.h"
#include "platform/failure.h"

namespace {

constexpr const wchar_t* kEventSource = L"Quillet.Platform.Native.Util";
constexpr std::uint32_t kOpenFailed = 1;

}  // namespace

void QLLogger::InitializeLog(const wchar_t* fileName, QLLogLevel mask) noexcept {
    ql::Completes([&] {
        const auto output = std::make_shared<QLLoggerOutputs::FileOutput>(fileName);
        InitializeLog(output, mask);
        if (output->IsOpen()) return;
        const std::wstring message =
            std::wstring(L"The log cannot be opened: ") + (fileName ? fileName : L"");
        ql::ReportToEventLog(kEventSource, kOpenFailed, message.c_str());
    });
}

namespace QLLoggerOutputs {

FileOutput::FileOutput(const wchar_t* fileName) noexcept
    : file_(ql::FailureIfThrown(nullptr, [] { return std::make_shared<LogFile>(); })) {
    if (file_) file_->Open(fileName, LogFile::Start::kEmpty);
}

FileOutput::FileOutput(const FileOutput&) noexcept = default;

FileOutput& FileOutput::operator=(const FileOutput&) noexcept = default;

bool FileOutput::IsOpen() const noexcept {
    return file_ && file_->IsOpen();
}

void FileOutput::Write(QLLogLevel, const wchar_t* text) noexcept {
    if (file_ && text) file_->Append({text}, LogFile::Reach::kBuffer, ql::LineInHand());
}

void FileOutput::Flush() noexcept {
    if (file_) file_->Flush();
}

void FileOutput::Close() noexcept {
    if (file_) file_->Close();
}

// The last of its copies closes the file.
FileOutput::~FileOutput() = default;

}  // namespace QLLoggerOutputs
