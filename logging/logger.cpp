#include "logging/logger.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <new>
#include <utility>

#include "logging/line_memory.h"
#include "logging/log_ending.h"
#include "logging/log_queue.h"
#include "logging/output_lists.h"
#include "platform/cache_line.h"
#include "platform/failure.h"
#include "platform/unique_handle.h"
#include "platform/win32.h"

namespace {

// A busy writer takes its next batch after a nap, which spares the callers from waking it line by line.
constexpr DWORD kNapMilliseconds = 10;

struct LoggerState {  // NOLINT(clang-analyzer-optin.performance.Padding): on purpose
    ql::LogQueue queue;
    ql::CriticalSection starting;  // the writer waits in it for its starter
    ql::LineMemory memory;
    ql::OutputLists outputs;
    std::atomic<HANDLE> thread = nullptr;
    std::atomic<DWORD> threadId = 0;
    std::atomic<HANDLE> wake = nullptr;
    alignas(ql::kCacheLine) std::atomic<bool> busy = false;  // the writer has a message in hand
    std::atomic<bool> ending =
        false;  // the writer is gone, the process ends: memory may be in disorder, none is freed
};

// Never destroyed: the host may log from its own static destructors.
union Immortal {
    Immortal() : state() {}
    ~Immortal() {}
    LoggerState state;
};

Immortal g_immortal;
LoggerState& g_log = g_immortal.state;

bool OnWriterThread() noexcept {
    return g_log.threadId == ::GetCurrentThreadId();
}

bool WriterIsGone() noexcept {
    return ::WaitForSingleObject(g_log.thread, 0) == WAIT_OBJECT_0;
}

void WakeWriter() noexcept {
    if (const HANDLE wake = g_log.wake) ::SetEvent(wake);
}

// The writer's code must outlast every FreeLibrary.
void PinModule() noexcept {
    constexpr DWORD kHow = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN;
    HMODULE module = nullptr;
    ::GetModuleHandleExW(kHow, reinterpret_cast<const wchar_t*>(&g_immortal), &module);
}

// Waits for messages; the event ends a nap only where somebody waits for the writer or for memory.
void Rest() noexcept {
    const bool called = ::WaitForSingleObject(g_log.wake, kNapMilliseconds) == WAIT_OBJECT_0;
    if (!called && g_log.queue.FallAsleep()) ::WaitForSingleObject(g_log.wake, INFINITE);
}

// Some systems call a thread ended a moment before it stands still. It then finds the mark and stops by
// itself, or is caught amid a message; nobody can see which, so that takes a moment's patience.
void WaitForStandstill() noexcept {
    constexpr int kPatienceMilliseconds = 20;
    for (int i = 0; i < kPatienceMilliseconds && g_log.busy; ++i) ::Sleep(1);
}

// An output that cannot be closed must not keep the others open.
void CloseQuietly(ILogOutput& output) noexcept {
    ql::Completes([&] { output.Close(); });
}

ql::LogRegistration* Detach(QLLogLevel level) noexcept {
    return g_log.ending ? g_log.outputs.DetachAbandoned(level) : g_log.outputs.Detach(level);
}

void CloseAndRelease(ql::LogRegistration* first) noexcept {
    for (ql::LogRegistration* at = first; at; at = at->next) CloseQuietly(*at->output);
    while (first && !g_log.ending) {
        const std::unique_ptr<ql::LogRegistration> released(first);
        first = released->next;
    }
}

DWORD WINAPI RunWriter(void* run) {
    return reinterpret_cast<std::uint32_t (*)(void*)>(run)(nullptr);
}

}  // namespace

bool ql::LogIsEnding() noexcept {
    return g_log.ending;
}

QLLogger QLLogger::s_logger;

ILogOutput::~ILogOutput() = default;

LogMessage::~LogMessage() = default;

CloseLogMessage::~CloseLogMessage() {
    if (event_) ::SetEvent(event_);
}

QLLogger::~QLLogger() {
    if (OnWriterThread()) {
        // An output ended the process: what it was given is its own affair.
        if (g_log.queue.InHand()) g_log.queue.Advance();
        Drain();
    } else {
        CloseLogs();
    }
}

QLLogger& QLLogger::GetLogger() noexcept {
    return s_logger;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface is the hosts'
void QLLogger::InitializeLog(std::shared_ptr<ILogOutput> output, QLLogLevel mask) noexcept {
    ql::Completes([&] {
        for (const QLLogLevel level : ql::kLogLevels) {
            if (mask & level) AddOutput(level, output);
        }
    });
    if (!g_log.thread) StartWriter();
}

void QLLogger::AddOutput(QLLogLevel level, std::shared_ptr<ILogOutput> output) {
    if (output) g_log.outputs.Add(level, std::move(output));
}

void QLLogger::StartWriter() noexcept {
    const ql::CriticalSectionGuard guard(g_log.starting);
    if (g_log.thread) return;
    ql::UniqueKernelHandle wake(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    if (!wake) return;
    PinModule();
    g_log.wake = wake.get();
    DWORD id = 0;
    const HANDLE thread =
        ::CreateThread(nullptr, 0, RunWriter, reinterpret_cast<void*>(&LoggerThreadProc), 0, &id);
    if (!thread) {
        g_log.wake = nullptr;
        return;
    }
    wake.release();
    g_log.threadId = id;
    g_log.thread = thread;
}

void QLLogger::PutMessage(QLLogLevel level, const wchar_t* text) noexcept {
    if (text) PutLine(level, text);
}

void QLLogger::PutLine(QLLogLevel level, std::wstring_view text) noexcept {
    ql::Completes([&] { PushEvent(NewLine(level, text)); });
}

std::shared_ptr<LogMessage> QLLogger::NewLine(QLLogLevel level, std::wstring_view text) {
    const std::size_t bytes = sizeof(WriteLogMessage) + (text.size() + 1) * sizeof(wchar_t);
    const ql::LineMemory::Place place = g_log.memory.Take(bytes);
    if (place.isStockLow) WakeWriter();
    if (!place.at) return std::make_shared<WriteLogMessage>(level, std::wstring(text));
    std::byte* const behind = place.at + sizeof(WriteLogMessage);
    auto* const placed = reinterpret_cast<wchar_t*>(behind);
    *std::copy(text.begin(), text.end(), placed) = L'\0';
    // The block owns it, which Release knows.
    return {std::shared_ptr<void>(), new (place.at) WriteLogMessage(level, placed, place.block)};
}

void QLLogger::FlushLogs() noexcept {
    ql::Completes([] { PushEvent(std::make_shared<FlushLogMessage>()); });
}

void QLLogger::CloseLogs() noexcept {
    if (!g_log.thread) return;
    if (!OnWriterThread() && WriterIsGone()) return Drain();
    ql::Completes([] { QueueCloseAndWait(); });
}

void QLLogger::QueueCloseAndWait() {
    if (OnWriterThread()) return PushEvent(std::make_shared<CloseLogMessage>(nullptr));
    const ql::UniqueKernelHandle closed(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    PushEvent(std::make_shared<CloseLogMessage>(closed.get()));
    WakeWriter();
    if (!closed) return;
    const std::array<HANDLE, 2> either = {closed.get(), g_log.thread};
    constexpr DWORD kWriterEnded = WAIT_OBJECT_0 + 1;
    if (::WaitForMultipleObjects(2, either.data(), FALSE, INFINITE) == kWriterEnded) Drain();
}

void QLLogger::PushEvent(std::shared_ptr<LogMessage> message) noexcept {
    if (message && g_log.queue.Push(std::move(message))) WakeWriter();
}

std::uint32_t QLLogger::LoggerThreadProc(void*) {
    { const ql::CriticalSectionGuard startedByNow(g_log.starting); }
    for (;;) {
        if (!HandleNextAsWriter()) Rest();
    }
}

bool QLLogger::HandleNextAsWriter() noexcept {
    g_log.busy = true;
    if (g_log.ending) {
        g_log.busy = false;
        ::Sleep(INFINITE);
    }
    g_log.memory.Stock();
    const bool any = g_log.queue.InHand() || g_log.queue.Take();
    if (any) HandleInHand();
    g_log.busy = false;
    return any;
}

void QLLogger::HandleInHand() noexcept {
    LogMessage* const message = g_log.queue.InHand();
    Handle(message->self_);
    g_log.queue.Advance();
    if (!g_log.ending) Release(*message);
}

void QLLogger::Release(LogMessage& message) noexcept {
    const std::shared_ptr<LogMessage> released = std::move(message.self_);
    if (message.type() != LogMessage::kWrite) return;
    auto& line = static_cast<WriteLogMessage&>(message);
    if (!line.block_) return;
    ql::LineBlock* const block = line.block_;
    line.~WriteLogMessage();
    g_log.memory.GiveBack(block);
}

void QLLogger::Handle(const std::shared_ptr<LogMessage>& message) noexcept {
    ql::Completes([&] {  // a failing output must not end the log
        switch (message->type()) {
            case LogMessage::kWrite: return WriteMessage(message);
            case LogMessage::kFlush: return FlushLog(message);
            case LogMessage::kClose: return CloseLog(message);
        }
    });
}

void QLLogger::WriteMessage(const std::shared_ptr<LogMessage>& message) {
    auto& line = static_cast<WriteLogMessage&>(*message);
    unsigned passed = 0;
    for (const QLLogLevel level : ql::kLogLevels) {
        if (!(line.level() & level)) continue;
        const ql::LogRegistration* at = g_log.outputs.First(level);
        if (!at) return;
        for (; at; at = at->next) {
            // Not twice to the same output, should the process end amid the message.
            if (passed++ < line.delivered_) continue;
            at->output->Write(level, line.text());
            line.delivered_ = passed;
        }
    }
}

void QLLogger::FlushLog(const std::shared_ptr<LogMessage>&) {
    for (const QLLogLevel level : ql::kLogLevels) {
        for (const ql::LogRegistration* at = g_log.outputs.First(level); at; at = at->next)
            at->output->Flush();
    }
}

void QLLogger::CloseLog(const std::shared_ptr<LogMessage>&) {
    for (const QLLogLevel level : ql::kLogLevels) CloseAndRelease(Detach(level));
}

// What the writer would have done. It is gone, so the process ends and this is its last thread: no lock is
// taken, since nobody is left who could let go of it.
void QLLogger::Drain() noexcept {
    g_log.ending = true;
    if (!OnWriterThread()) WaitForStandstill();
    g_log.queue.FinishTake();
    while (g_log.queue.InHand() || g_log.queue.Take()) HandleInHand();
    CloseLog(nullptr);
}
