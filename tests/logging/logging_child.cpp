// logging_child WAY FILE [OFFSET]: queues lines and ends in that way.
#include <atomic>
#include <climits>
#include <cstdlib>
#include <cwchar>
#include <thread>

#include "logging/log_outputs.h"
#include "platform/win32.h"
#include "tests/logging/stopped_thread.h"
#include "tests/support/replaced_import.h"

// The lock under which the system loads libraries.
extern "C" LONG NTAPI LdrLockLoaderLock(ULONG flags, ULONG* state, ULONG_PTR* cookie);
extern "C" LONG NTAPI LdrUnlockLoaderLock(ULONG flags, ULONG_PTR cookie);

namespace {

using QLLoggerOutputs::RollingFileOutput;

constexpr int kLines = 20'000;
constexpr int kEnd = 5;  // what most ways answer
constexpr int kMet = 1 << 24;

// Without memory: a thread that ends while it takes some may leave none to the others.
void PutLines(int first, int end) {
    for (int i = first; i < end; ++i) {
        wchar_t line[16];
        std::swprintf(line, std::size(line), L"%d\n", i);
        QLLogger::PutMessage(QLLOG_INFO, line);
    }
}

std::atomic<bool> g_allPut = false, g_writerRuns = false;

// Does something odd at one line, when all are queued, and at its close.
struct OddOutput : ILogOutput {
    using Deed = void (*)();
    OddOutput(Deed whenAmid, Deed whenClosed) : amid(whenAmid), atClose(whenClosed) {}
    void Write(QLLogLevel, const wchar_t* text) override {
        g_writerRuns = true;
        if (std::wcscmp(text, L"1000\n") != 0) return;
        while (!g_allPut) ::Sleep(1);
        amid();
    }
    void Flush() override {}
    void Close() override { atClose(); }

    const Deed amid, atClose;
};

// Makes two entries of a line.
struct InPieces : QLLoggerOutputs::FileOutput {
    using FileOutput::FileOutput;
    void Write(QLLogLevel level, const wchar_t* text) noexcept override {
        for (const std::wstring& piece : {std::wstring(1, text[0]), std::wstring(text + 1)})
            FileOutput::Write(level, piece.c_str());
    }
};

void Nothing() {}
void Dawdle() {
    ::Sleep(30);
}
void EndProcess() {
    ::ExitProcess(kEnd);
}
void UseTheLog() {
    QLLogger::InitializeLog(std::make_shared<OddOutput>(Nothing, Nothing), QLLOG_WARNING);
    QLLogger::FlushLogs();
    QLLogger::CloseLogs();
}

// How an output misbehaves, and whether it stands before the file or behind.
struct OddRow {
    std::wstring_view way;
    OddOutput::Deed amid, atClose;
    bool isFirst;
};
constexpr OddRow kOddRows[] = {
    {L"exits first", EndProcess, Nothing, true},          {L"exits last", EndProcess, Nothing, false},
    {L"exits in close first", Nothing, EndProcess, true}, {L"closes slowly", Nothing, Dawdle, true},
    {L"closes slowly, alone", Nothing, Dawdle, false},    {L"closes from within", UseTheLog, Nothing, true}};

// Wine may crash when it ends a thread that it has not yet started in full.
void WaitUntilTheWriterRuns() {
    QLLogger::InitializeLog(std::make_shared<OddOutput>(Nothing, Nothing), QLLOG_DEBUG);
    QLLogger::PutMessage(QLLOG_DEBUG, L"");
    while (!g_writerRuns) ::Sleep(1);
}

// The same goes for other threads.
void CloseBeside() {
    static std::atomic<bool> runs = false;
    std::thread([] {
        runs = true;
        QLLogger::CloseLogs();
    }).detach();
    while (!runs) ::Sleep(0);
}

// Lines, and perhaps a close that main does not wait for.
int LogBesideAnOddOutput(const OddRow& row, const wchar_t* file) {
    const auto odd = std::make_shared<OddOutput>(row.amid, row.atClose);
    if (row.isFirst) QLLogger::InitializeLog(odd, QLLOG_INFO);
    QLLogger::InitializeLog(file, QLLOG_INFO);
    if (!row.isFirst) QLLogger::InitializeLog(odd, QLLOG_INFO);
    WaitUntilTheWriterRuns();
    PutLines(0, kLines);
    const bool usesTheLog = row.amid == UseTheLog;  // in the writer's hands or in those of the end
    if (!usesTheLog) CloseBeside();
    g_allPut = true;  // not before: an output may end the process at once
    if (!usesTheLog) ::Sleep(row.amid == EndProcess ? INFINITE : 10);
    return kEnd;
}

void Spin() {
    const unsigned spins = ::GetTickCount() * 2654435761u % 2'000'000;
    for (volatile unsigned left = spins; left > 0;) left = left - 1;
}

// Ends while another thread logs, wherever that is then or where it, or the writer, stands still at an
// instruction of the library. FILE and the rolling FILE.log have the lines. Answers how many were queued by
// then, and whether the instruction was met.
int EndAmidLines(const wchar_t* file, const wchar_t* offset) {
    static std::atomic<int> queued = 0;
    static std::atomic<bool> isDone = false;
    QLLogger::InitializeLog(file, QLLOG_INFO);
    const std::wstring rolling = std::wstring(file) + L".log";
    QLLogger::InitializeLog(
        std::make_shared<RollingFileOutput>(rolling.c_str(), L"child", L"", L"", 1000, 2000, 1u), QLLOG_INFO);
    WaitUntilTheWriterRuns();
    const int last = offset ? 200 : INT_MAX;
    const auto log = [last] {
        for (; queued < last; ++queued) {
            PutLines(queued, queued + 1);
            if (queued % 64 != 63) continue;
            QLLogger::FlushLogs();
            ::Sleep(last == INT_MAX ? 0 : 15);
        }
        QLLogger::CloseLogs();
        isDone = true;
    };
    if (offset) {
        const StoppedThread stopped(std::stoul(offset, nullptr, 16));
        std::thread(log).detach();
        for (int i = 0; i < 100 && !isDone && !stopped.IsMet(); ++i) ::Sleep(2);
        ::Sleep(5);  // for what goes on beside
        return stopped.IsMet() ? queued | kMet : queued.load();
    }
    std::thread(log).detach();
    while (queued == 0) ::Sleep(0);
    Spin();
    return queued;
}

HANDLE WINAPI NoThread(SECURITY_ATTRIBUTES*, SIZE_T, LPTHREAD_START_ROUTINE, void*, DWORD, DWORD*) {
    return nullptr;
}

// Who closes writes the lines, where no thread can be had or where, within the system's loader, none begins.
int LogWithoutAWriter(const wchar_t* file, bool isWithinTheLoader) {
    ULONG_PTR cookie = 0;
    if (isWithinTheLoader) {
        ::LdrLockLoaderLock(0, nullptr, &cookie);
        QLLogger::SetBacklogLimit(1, QLLogBacklog::kWait);
    } else {
        ReplaceImport(kLibrary, L"kernel32", "CreateThread", &NoThread);
    }
    QLLogger::InitializeLog(file, QLLOG_INFO);
    PutLines(0, 100);
    QLLogger::CloseLogs();
    ::TerminateProcess(::GetCurrentProcess(), kEnd);  // no end that could write them
    return 0;
}

// A library that is told of the process's end before this one logs then; nobody may wait for the writer.
int LogAsALibraryEnds(const wchar_t* file, bool isFirst) {
    QLLogger::SetBacklogLimit(1, QLLogBacklog::kWait);
    if (isFirst) {
        ::SetEnvironmentVariableW(L"QL_LOG", file);
    } else {
        QLLogger::InitializeLog(file, QLLOG_INFO);
        WaitUntilTheWriterRuns();
    }
    return ::LoadLibraryW(L"logging_late.dll") ? kEnd : kEnd + 1;
}

// Starts the log on two threads at once, one of which loads a library, as far as the system can tell.
int StartWhileALibraryLoads(const wchar_t* file) {
    std::atomic<bool> runs = false, isLocked = false;
    std::thread other([&] {
        for (runs = true; !isLocked;) ::Sleep(1);
        QLLogger::InitializeLog(file, QLLOG_INFO);
    });
    while (!runs) ::Sleep(1);
    ULONG_PTR cookie = 0;
    ::LdrLockLoaderLock(0, nullptr, &cookie);
    isLocked = true;
    ::Sleep(30);  // the other thread waits for the lock by then
    QLLogger::InitializeLog(std::make_shared<OddOutput>(Nothing, Nothing), QLLOG_WARNING);
    ::LdrUnlockLoaderLock(0, cookie);
    other.join();
    PutLines(0, kLines);
    return kEnd;
}

}  // namespace

int wmain(int, wchar_t** argv) {
    const std::wstring_view way = argv[1];
    const wchar_t* const file = argv[2];
    for (const OddRow& row : kOddRows)
        if (row.way == way) return LogBesideAnOddOutput(row, file);
    if (way == L"amid lines") return EndAmidLines(file, argv[3]);
    if (way == L"without threads") return LogWithoutAWriter(file, false);
    if (way == L"within the loader") return LogWithoutAWriter(file, true);
    if (way == L"first as a library ends") return LogAsALibraryEnds(file, true);
    if (way == L"as a library ends") return LogAsALibraryEnds(file, false);
    if (way == L"amid loading") return StartWhileALibraryLoads(file);
    if (way == L"early") {
        QLLogger::CloseLogs();
        PutLines(0, kLines);
    }
    QLLogger::InitializeLog(std::make_shared<InPieces>(file), QLLOG_INFO);
    WaitUntilTheWriterRuns();
    if (way != L"early") PutLines(0, kLines);
    if (way == L"races") {
        CloseBeside();
        Spin();
        ::ExitProcess(kEnd);
    }
    if (way == L"killed when idle") {
        ::Sleep(200);
        ::TerminateProcess(::GetCurrentProcess(), kEnd);
    }
    if (way == L"thread") std::thread(EndProcess).join();
    if (way == L"static") std::atexit([] { PutLines(kLines, 2 * kLines); });
    return kEnd;
}
