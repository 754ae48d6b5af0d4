// logging_child WAY FILE: queues lines and ends in that way.
#include <atomic>
#include <climits>
#include <cstdlib>
#include <cwchar>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "logging/log_outputs.h"
#include "platform/win32.h"

namespace {

constexpr int kLines = 20'000;

void PutLines(int count) {
    for (int i = 0; i < count; ++i) QLLogger::PutMessage(QLLOG_INFO, (std::to_wstring(i) + L'\n').c_str());
}

struct ExitsWhenDestroyed {
    bool armed = false;
    ~ExitsWhenDestroyed() {
        if (!armed) return;
        PutLines(kLines);
        std::exit(5);
    }
} g_exits;

std::atomic<bool> g_allPut = false;

// Ends the process from the writer thread, amid the lines.
class ExitingOutput : public ILogOutput {
  public:
    void Write(QLLogLevel, const wchar_t* text) override {
        if (std::wcscmp(text, L"1000\n") != 0) return;
        while (!g_allPut) ::Sleep(1);
        ::ExitProcess(5);
    }
    void Flush() override {}
    void Close() override {}
};

// Wine may crash when it ends a thread that it has not yet started in full.
void WaitUntilTheWriterRuns() {
    static std::atomic<bool> runs = false;
    struct Sign : ILogOutput {
        void Write(QLLogLevel, const wchar_t*) override { runs = true; }
        void Flush() override {}
        void Close() override {}
    };
    QLLogger::InitializeLog(std::make_shared<Sign>(), QLLOG_DEBUG);
    QLLogger::PutMessage(QLLOG_DEBUG, L"");
    while (!runs) ::Sleep(1);
}

void StartRolling(const wchar_t* file) {
    const auto output =
        std::make_shared<QLLoggerOutputs::RollingFileOutput>(file, L"child", L"", L"", 1000, 2000, 1u);
    QLLogger::InitializeLog(output, QLLOG_INFO);
}

// Entries without end; FILE.closed tells that the first thousand are on disk for good.
int WriteUntilKilled(const wchar_t* file) {
    for (const int limit : {INT_MAX, 4'000'000}) {
        const auto output =
            std::make_shared<QLLoggerOutputs::RollingFileOutput>(file, L"child", L"", L"", 1, limit, 1u);
        QLLogger::InitializeLog(output, QLLOG_INFO);
        if (limit == INT_MAX) {
            PutLines(1000);
            QLLogger::CloseLogs();
            QLLoggerOutputs::FileOutput((std::wstring(file) + L".closed").c_str());
        }
    }
    for (int i = 1000;; ++i) {
        QLLogger::PutMessage(QLLOG_INFO, (std::to_wstring(i) + L'\n').c_str());
        if (i % 100 == 0) ::Sleep(1);
    }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc < 3) return 2;
    const std::wstring_view way = argv[1];
    const wchar_t* const file = argv[2];
    if (way == L"killed") return WriteUntilKilled(file);
    if (way == L"early") {
        QLLogger::CloseLogs();
        PutLines(kLines);
        QLLogger::InitializeLog(file, QLLOG_INFO);
        WaitUntilTheWriterRuns();
        return 5;
    }
    if (way == L"rolling") {
        StartRolling(file);
        WaitUntilTheWriterRuns();
        PutLines(500);
        return 5;
    }
    QLLogger::InitializeLog(file, QLLOG_INFO);
    if (way == L"output") QLLogger::InitializeLog(std::make_shared<ExitingOutput>(), QLLOG_INFO);
    WaitUntilTheWriterRuns();
    PutLines(kLines);
    g_allPut = true;
    if (way == L"thread") std::thread([] { ::ExitProcess(5); }).join();
    if (way == L"output") ::Sleep(INFINITE);
    g_exits.armed = way == L"static";
    return 5;
}
