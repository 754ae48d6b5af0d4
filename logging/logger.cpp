#include "logging/logger.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include "logging/line_memory.h"
#include "logging/log_ending.h"
#include "logging/log_queue.h"
#include "logging/lost_lines.h"
#include "logging/output_lists.h"
#include "platform/cache_line.h"
#include "platform/failure.h"
#include "platform/last_error.h"
#include "platform/module.h"
#include "platform/unique_handle.h"
#include "platform/wait_until.h"
#include "platform/win32.h"
#include "text/unit_block.h"

namespace {

// Outputs take a line up to its first zero; within a line it is shown by the picture of one.
constexpr wchar_t kShownZero = L'\u2400';

// A busy writer takes its next batch after a nap, which spares the callers from waking it line by line.
constexpr DWORD kNapMilliseconds = 10;

// What the log tells of before its next line, by ql::LostTo. A file that misses lines itself tells so itself.
constexpr std::array<std::wstring_view, 3> kCauses = {L"there was no memory", L"the backlog was full",
                                                      L"an output failed"};

void WINAPI OnThreadsEnd(void* block) noexcept;

struct LoggerState {  // NOLINT(clang-analyzer-optin.performance.Padding): on purpose
    ql::LogQueue queue;
    ql::LineMemory memory{OnThreadsEnd};
    ql::OutputLists outputs;
    std::atomic<bool> isWanted = false;  // a log was initialized
    std::atomic<bool> starting = false;  // a thread starts the writer
    std::atomic<HANDLE> thread = nullptr;
    std::atomic<HANDLE> wake = nullptr;
    std::atomic<std::size_t> limit = 0;
    std::atomic<QLLogBacklog> whenFull = QLLogBacklog::kWait;
    std::atomic<bool> ending =
        false;  // the writer is gone, the process ends: memory may be in disorder, none is freed
    std::atomic<std::uint32_t> lost = 0;
    std::array<std::atomic<std::uint32_t>, kCauses.size()> untold = {};
    alignas(ql::kCacheLine) std::atomic<std::size_t> backlog = 0;
    alignas(ql::kCacheLine) std::atomic<bool> busy = false;  // the writer has an entry in hand

    // Of the thread that handles entries: the writer, or who stands in for it.
    std::atomic<DWORD> handler = 0;
    std::atomic<ILogOutput*> called = nullptr;  // the output that is being asked something
    std::atomic<bool> isClosing = false;        // and that to close
    std::atomic<ILogOutput*> gone = nullptr;    // the output that ended the process
    std::atomic<std::uint32_t> inHand = 0;      // the number of the line that an output is being handed
    std::atomic<std::uint32_t> delivered = 0;   // that of the last one that it was
    std::atomic<bool> isUnflushed = false;
};

// Never destroyed: the host may log from its own static destructors.
union Immortal {
    Immortal() : state() {}
    ~Immortal() {}
    LoggerState state;
};

Immortal g_immortal;
LoggerState& g_log = g_immortal.state;

void WINAPI OnThreadsEnd(void* block) noexcept {
    if (block) g_log.memory.Retire(static_cast<ql::LineBlock*>(block));
}

bool IsHandler() noexcept {
    return g_log.handler == ::GetCurrentThreadId();
}

bool BecomeHandler() noexcept {
    DWORD nobody = 0;
    return g_log.handler.compare_exchange_strong(nobody, ::GetCurrentThreadId());
}

bool WriterIsGone() noexcept {
    return g_log.thread && ::WaitForSingleObject(g_log.thread, 0) == WAIT_OBJECT_0;
}

void WakeWriter() noexcept {
    if (const HANDLE wake = g_log.wake) ::SetEvent(wake);
}

// The writer's code must outlast every FreeLibrary. The system takes its own lock for that, so none of ours
// is held.
void PinModule() noexcept {
    constexpr DWORD kHow = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN;
    HMODULE module = nullptr;
    ::GetModuleHandleExW(kHow, reinterpret_cast<const wchar_t*>(&g_immortal), &module);
}

// Waits for entries; the event ends a nap only where somebody waits for the writer or for memory.
void Rest() noexcept {
    const bool called = ::WaitForSingleObject(g_log.wake, kNapMilliseconds) == WAIT_OBJECT_0;
    if (!called && g_log.queue.FallAsleep()) ::WaitForSingleObject(g_log.wake, INFINITE);
}

// Some systems call a thread ended a moment before it stands still. It then finds the mark and stops by
// itself, or is caught amid an entry; nobody can see which, so that takes a moment's patience.
void WaitForStandstill() noexcept {
    ql::WaitUntil([] { return !g_log.busy; }, std::chrono::milliseconds(20));
}

// What the writer stores for those who may have to go on in its place, in the order in which it does.
template <class Value>
void Set(std::atomic<Value>& kept, std::type_identity_t<Value> value) noexcept {
    kept.store(value, std::memory_order_release);
}

// Asks an output for something; false when it throws.
template <class Question>
bool Ask(const ql::LogRegistration& asked, Question question) noexcept {
    Set(g_log.called, asked.output.get());
    const bool ok = ql::Completes([&] { question(*asked.output); });
    Set(g_log.called, nullptr);
    return ok;
}

bool IsGone(const ql::LogRegistration& registration) noexcept {
    return registration.output.get() == g_log.gone;
}

// False when the output failed.
bool Hand(const ql::LogRegistration& to, QLLogLevel level, const wchar_t* text) noexcept {
    if (IsGone(to)) return true;
    Set(g_log.isUnflushed, true);
    return Ask(to, [&](ILogOutput& output) { output.Write(level, text); });
}

// Hands a line to the outputs of its levels, each under a number of its own. Up to g_log.delivered they have
// it.
void Deliver(QLLogLevel levels, const wchar_t* text, std::uint32_t number) noexcept {
    for (const QLLogLevel level : ql::kLogLevels) {
        if (!(levels & level)) continue;
        const ql::LogRegistration* at = g_log.outputs.First(level);
        if (!at) return;
        for (; at; at = at->newer, ++number) {
            if (static_cast<std::int32_t>(number - g_log.delivered) <= 0) continue;
            Set(g_log.inHand, number);
            const bool ok = Hand(*at, level, text);
            Set(g_log.delivered, number);
            Set(g_log.inHand, 0);
            if (!ok) return ql::CountLostLines(ql::LostTo::kOutput, 1);
        }
    }
}

// Before a line of these levels, to the outputs of the lowest.
void TellLosses(QLLogLevel levels) noexcept {
    const auto lowest =
        std::ranges::find_if(ql::kLogLevels, [=](QLLogLevel level) { return levels & level; });
    if (lowest == ql::kLogLevels.end()) return;
    for (std::size_t cause = 0; cause < kCauses.size(); ++cause) {
        if (!g_log.untold[cause].load(std::memory_order_relaxed)) continue;
        const ql::LogRegistration* at = g_log.outputs.First(*lowest);
        if (!at) return;
        const ql::LostLinesText told(g_log.untold[cause].exchange(0), kCauses[cause]);
        for (; at; at = at->newer) Hand(*at, *lowest, told.Text());
    }
}

// A number of 0 is that of no line.
std::uint32_t NextNumber() noexcept {
    const std::uint32_t next = g_log.delivered + 1;
    return next ? next : 1;
}

void Flush(const ql::LogRegistration* first, bool bufferedAlone) noexcept {
    for (const ql::LogRegistration* at = first; at; at = at->newer) {
        if (IsGone(*at) || (bufferedAlone && !at->isBuffered)) continue;
        Ask(*at, [](ILogOutput& output) { output.Flush(); });
    }
}

void FlushOutputs(bool bufferedAlone) noexcept {
    Set(g_log.isUnflushed, false);
    for (const QLLogLevel level : ql::kLogLevels) Flush(g_log.outputs.First(level), bufferedAlone);
}

// An output may end the process in its Close, and nobody goes on behind the end: all have their lines before.
void FlushBeforeTheEnd() noexcept {
    for (const QLLogLevel level : ql::kLogLevels) Flush(g_log.outputs.FirstClosing(level), true);
    FlushOutputs(true);
}

void CloseDetached(QLLogLevel level) noexcept {
    Set(g_log.isClosing, true);
    for (const ql::LogRegistration* at = g_log.outputs.FirstClosing(level); at; at = at->newer) {
        if (!IsGone(*at)) Ask(*at, [](ILogOutput& output) { output.Close(); });
    }
    Set(g_log.isClosing, false);
}

void Release(ql::LogRegistration* first) noexcept {
    while (first) {
        const std::unique_ptr<ql::LogRegistration> released(first);
        first = released->newer;
    }
}

void CloseOutputs() noexcept {
    if (g_log.ending) FlushBeforeTheEnd();
    for (const QLLogLevel level : ql::kLogLevels) {
        CloseDetached(level);  // what a close that was cut short has left
        g_log.outputs.Detach(level);
        CloseDetached(level);
        if (g_log.ending) continue;
        ql::LogRegistration* const closed = g_log.outputs.FirstClosing(level);
        g_log.outputs.Forget(level);
        Release(closed);
    }
}

void Free(ql::LogEntry* entry) noexcept {
    if (entry->counted) g_log.backlog.fetch_sub(entry->counted);
    ql::LineBlock* const block = entry->block;
    entry->~LogEntry();
    if (block) return g_log.memory.GiveBack(block);
    ::operator delete(entry);
}

// Memory for an entry and the text behind it; null when there is none.
ql::LogEntry* NewEntry(std::size_t bytes) noexcept {
    const ql::LineMemory::Place place = g_log.memory.Take(bytes);
    if (place.isStockLow) WakeWriter();
    void* const at = place.at ? place.at : ::operator new(bytes, std::nothrow);
    if (!at) return nullptr;
    auto* const entry = new (at) ql::LogEntry;
    entry->block = place.block;
    return entry;
}

// Whether this thread must not wait for the writer: it is what handles entries itself, or the writer has not
// begun, which may last as long as this thread is within the system's loader.
bool MustNotWait() noexcept {
    return IsHandler() || (g_log.thread && !g_log.handler);
}

// Whether a line of so many bytes may join the backlog; it then counts.
bool Admit(std::size_t bytes, std::size_t limit) noexcept {
    for (;;) {
        const bool waits = g_log.whenFull == QLLogBacklog::kWait;
        const std::size_t before = g_log.backlog.fetch_add(bytes);
        if (before == 0 || before + bytes <= limit || (waits && MustNotWait())) return true;
        g_log.backlog.fetch_sub(bytes);
        if (!waits || !g_log.thread) return false;
        WakeWriter();
        ::Sleep(1);
    }
}

DWORD WINAPI RunWriter(void* run) {
    return reinterpret_cast<std::uint32_t (*)(void*)>(run)(nullptr);
}

}  // namespace

bool ql::LogIsEnding() noexcept {
    return g_log.ending;
}

std::uint32_t ql::LineInHand() noexcept {
    return IsHandler() ? g_log.inHand.load() : 0;
}

void ql::CountLostLines(LostTo cause, std::uint32_t lines) noexcept {
    g_log.lost += lines;
    if (cause != LostTo::kDisk) g_log.untold[static_cast<std::size_t>(cause)] += lines;
}

QLLogger QLLogger::s_logger;

ILogOutput::~ILogOutput() = default;

IBufferedLogOutput::~IBufferedLogOutput() = default;

LogMessage::~LogMessage() = default;

CloseLogMessage::~CloseLogMessage() {
    if (event_) ::SetEvent(event_);
}

namespace {

// What an entry asks for, by those who handle it.
class Handling : public QLLogger {
  public:
    static void Handle(const ql::LogEntry& entry, const wchar_t* text) noexcept {
        if (!entry.message) return Deliver(entry.level, text, entry.firstDelivery);
        switch (entry.message->type()) {
            case LogMessage::kWrite: return WriteMessage(entry.message);
            case LogMessage::kFlush: return FlushLog(entry.message);
            case LogMessage::kClose: return CloseLog(entry.message);
        }
    }
};

// A message of the host's counts where it is a line.
QLLogLevel LevelsOf(const ql::LogEntry& entry) noexcept {
    if (!entry.message) return entry.level;
    const bool isLine = entry.message->type() == LogMessage::kWrite;
    return isLine ? static_cast<const WriteLogMessage&>(*entry.message).level() : QLLogLevel{};
}

void Begin(ql::LogEntry& entry) noexcept {
    if (entry.firstDelivery) return;
    TellLosses(LevelsOf(entry));
    entry.firstDelivery = NextNumber();
}

void HandleInHand() noexcept {
    ql::LogEntry* const entry = g_log.queue.InHand();
    Begin(*entry);
    Handling::Handle(*entry, entry->Text());
    g_log.queue.Advance();
    if (!g_log.ending) Free(entry);
}

void HandleAll() noexcept {
    while (g_log.queue.InHand() || g_log.queue.Take()) HandleInHand();
}

// False when there was nothing to do.
bool HandleNextAsWriter() noexcept {
    g_log.busy = true;
    if (g_log.ending) {
        g_log.busy = false;
        ::Sleep(INFINITE);
    }
    g_log.memory.Stock();
    const bool any = g_log.queue.InHand() || g_log.queue.Take();
    if (any) HandleInHand();
    if (!any && g_log.isUnflushed) FlushOutputs(true);
    g_log.busy = false;
    return any;
}

// What the writer would have done. It is gone, so the process ends and this is its last thread: no lock is
// taken, since nobody is left who could let go of it. Outputs that end the process are the last to be closed.
void Drain() noexcept {
    const bool isWriter = IsHandler();
    g_log.ending = true;
    if (!isWriter) WaitForStandstill();
    g_log.handler = ::GetCurrentThreadId();
    const bool endedInClose = g_log.isClosing;
    if (isWriter) g_log.gone = g_log.called.load();
    if (isWriter && g_log.inHand) g_log.delivered = g_log.inHand.load();
    g_log.inHand = 0;
    g_log.queue.FinishTake();
    HandleAll();
    CloseOutputs();
    ILogOutput* const gone = g_log.gone;
    if (gone && !endedInClose) ql::Completes([gone] { gone->Close(); });
    g_log.handler = 0;
}

// For what is queued behind the end.
void HandleLate() noexcept {
    if (!BecomeHandler()) return;
    HandleAll();
    FlushOutputs(false);
    g_log.handler = 0;
}

// Within the system's loader, as in a DllMain, no thread begins, however long it is waited for.
bool WriterBegins() noexcept {
    ql::WaitUntil([] { return g_log.handler != 0; }, std::chrono::seconds(1));
    return g_log.handler;
}

// Where no thread can be had, or none that begins. False when there is a writer after all.
bool CloseHere() noexcept {
    for (; !BecomeHandler(); ::Sleep(1)) {
        if (g_log.thread) return false;
    }
    HandleAll();
    CloseOutputs();
    g_log.handler = 0;
    return true;
}

// Answers where the copy ends.
wchar_t* CopyShowingZeros(std::wstring_view text, wchar_t* out) noexcept {
    using ql::kBlockUnits;
    const wchar_t *from = text.data(), *const end = from + text.size();
    for (; end - from >= kBlockUnits; from += kBlockUnits, out += kBlockUnits) {
        ql::Block units;
        std::memcpy(&units, from, sizeof(units));
        units |= std::bit_cast<ql::Block>(units == ql::Unit{0}) & ql::Unit{kShownZero};
        std::memcpy(out, &units, sizeof(units));
    }
    return std::replace_copy(from, end, out, L'\0', kShownZero);
}

void Push(ql::LogEntry* entry) noexcept {
    if (g_log.queue.Push(entry)) WakeWriter();
    if (g_log.ending) HandleLate();
}

}  // namespace

QLLogger::~QLLogger() {
    if (this == &s_logger && ql::ProcessIsEnding()) {
        Drain();
        return;
    }
    CloseLogs();
    // Without a log the library was never pinned, and may be unloaded now.
    if (this == &s_logger && !g_log.isWanted) g_log.memory.Stop();
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
    g_log.isWanted = true;
    if (g_log.ending) return HandleLate();
    StartWriter();
}

void QLLogger::AddOutput(QLLogLevel level, std::shared_ptr<ILogOutput> output) {
    if (output) g_log.outputs.Add(level, std::move(output));
}

// Whether it runs now.
bool QLLogger::StartWriter() noexcept {
    if (g_log.thread) return true;
    PinModule();
    while (!ql::ProcessIsEnding() && g_log.starting.exchange(true)) ::Sleep(1);
    if (!g_log.thread && !ql::ProcessIsEnding()) {
        if (!g_log.wake) g_log.wake = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
        void* const run = reinterpret_cast<void*>(&LoggerThreadProc);
        if (g_log.wake) g_log.thread = ::CreateThread(nullptr, 0, RunWriter, run, 0, nullptr);
    }
    g_log.starting = false;
    return g_log.thread;
}

void QLLogger::PutMessage(QLLogLevel level, const wchar_t* text) noexcept {
    if (text) PutLine(level, text);
}

void QLLogger::PutLine(QLLogLevel level, std::wstring_view text) noexcept {
    const ql::LastErrorKept lastError;
    const std::size_t bytes = sizeof(ql::LogEntry) + (text.size() + 1) * sizeof(wchar_t);
    const std::size_t limit = g_log.limit.load(std::memory_order_relaxed);
    // The thread that ends the process writes its lines itself.
    const bool isBounded = limit && !ql::ProcessIsEnding();
    if (isBounded && !Admit(bytes, limit)) return ql::CountLostLines(ql::LostTo::kBacklog, 1);
    ql::LogEntry* const entry = NewEntry(bytes);
    if (!entry) {
        if (isBounded) g_log.backlog.fetch_sub(bytes);
        return ql::CountLostLines(ql::LostTo::kMemory, 1);
    }
    entry->level = level;
    entry->counted = isBounded ? bytes : 0;
    *CopyShowingZeros(text, entry->Text()) = L'\0';
    Push(entry);
}

void QLLogger::FlushLogs() noexcept {
    ql::Completes([] { PushEvent(std::make_shared<FlushLogMessage>()); });
}

// The event is signalled when the close is done.
void QLLogger::QueueCloseAndWait() {
    const ql::UniqueKernelHandle closed(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    PushEvent(std::make_shared<CloseLogMessage>(closed.get()));
    WakeWriter();
    if (!closed) return;
    const std::array<HANDLE, 2> either = {closed.get(), g_log.thread};
    constexpr DWORD kWriterEnded = WAIT_OBJECT_0 + 1;
    if (::WaitForMultipleObjects(2, either.data(), FALSE, INFINITE) == kWriterEnded) Drain();
}

void QLLogger::CloseLogs() noexcept {
    if (!g_log.isWanted) return;
    if (IsHandler()) {
        // The end closes all by itself.
        if (!g_log.ending) ql::Completes([] { PushEvent(std::make_shared<CloseLogMessage>(nullptr)); });
        return;
    }
    if (ql::ProcessIsEnding() || WriterIsGone()) return Drain();
    if (!(StartWriter() && WriterBegins()) && CloseHere()) return;
    ql::Completes([] { QueueCloseAndWait(); });
}

void QLLogger::SetBacklogLimit(std::size_t bytes, QLLogBacklog whenFull) noexcept {
    g_log.whenFull = whenFull;
    g_log.limit = bytes;
}

std::uint32_t QLLogger::LostLines() noexcept {
    return g_log.lost;
}

void QLLogger::PushEvent(std::shared_ptr<LogMessage> message) noexcept {
    if (!message) return;
    ql::LogEntry* const entry = NewEntry(sizeof(ql::LogEntry));
    if (!entry) {
        if (message->type() == LogMessage::kWrite) ql::CountLostLines(ql::LostTo::kMemory, 1);
        return;
    }
    entry->message = std::move(message);
    Push(entry);
}

std::uint32_t QLLogger::LoggerThreadProc(void*) {
    while (!g_log.thread || !BecomeHandler()) ::Sleep(1);
    for (;;) {
        if (!HandleNextAsWriter()) Rest();
    }
}

void QLLogger::WriteMessage(const std::shared_ptr<LogMessage>& message) {
    const auto& line = static_cast<const WriteLogMessage&>(*message);
    const ql::LogEntry* const inHand = g_log.queue.InHand();
    Deliver(line.level(), line.text(), inHand ? std::uint32_t{inHand->firstDelivery} : NextNumber());
}

void QLLogger::FlushLog(const std::shared_ptr<LogMessage>&) {
    FlushOutputs(false);
}

void QLLogger::CloseLog(const std::shared_ptr<LogMessage>&) {
    CloseOutputs();
}
