#include "logging/logger.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>

#include "platform/win32.h"
#include "tests/logging/recorder.h"
#include "tests/support/on_threads.h"

namespace {

struct OnWrite : Recorder {
    explicit OnWrite(void (*deed)()) : action(deed) {}
    void Write(QLLogLevel level, const wchar_t* text) override {
        Recorder::Write(level, text);
        action();
    }
    void (*const action)();
};

// Holds the writer at the first line until it is opened.
struct Gate : Recorder {
    void Write(QLLogLevel level, const wchar_t* text) override {
        isHeld = true;
        while (!isOpen) std::this_thread::yield();
        Recorder::Write(level, text);
    }
    std::atomic<bool> isHeld = false, isOpen = false;
};

// Lines that wait for the writer.
std::shared_ptr<Gate> HoldTheWriter() {
    auto gate = std::make_shared<Gate>();
    QLLogger::InitializeLog(gate, QLLOG_INFO);
    QLLogger::PutMessage(QLLOG_INFO, L"held");
    while (!gate->isHeld) std::this_thread::yield();
    return gate;
}

// Of two hundred characters each.
constexpr std::size_t kTwoLines = 500 * sizeof(wchar_t);

// Gives a host what its own loggers may do.
struct Host : QLLogger {
    using QLLogger::AddOutput, QLLogger::PushEvent;
};

}  // namespace

TEST(Logger, ALineGoesToTheOutputsOfItsLevels) {
    constexpr int kError = QLLOG_ERROR, kWarning = QLLOG_WARNING, kInfo = QLLOG_INFO, kUnknown = 16;
    constexpr int kSeveral = kError | kWarning | QLLOG_DEBUG, kFlush = -1;
    const struct {
        const char* what;
        int mask;
        std::vector<int> lines;  // the levels of each
        Calls calls;
    } cases[] = {
        {"an output of two levels has a line once, and is flushed and closed twice",
         kError | kInfo,
         {kError, kWarning, kFlush, kInfo},
         {L"1:x", L"flush", L"flush", L"4:x", L"close", L"close"}},
        {"a line of several levels stops at the first that has no output", kWarning, {kSeveral}, {L"close"}},
        {"at the third", kError | kWarning, {kSeveral}, {L"1:x", L"2:x", L"close", L"close"}},
        {"at the second", kError | QLLOG_DEBUG, {kSeveral}, {L"1:x", L"close", L"close"}},
        {"an empty mask", 0, {kFlush}, {}},
        {"unknown bits", kError | kUnknown, {kUnknown, kError}, {L"1:x", L"close"}}};
    for (const auto& c : cases) {
        const auto log = [&c] {
            QLLogger::InitializeLog(std::shared_ptr<ILogOutput>(), QLLOG_ERROR);
            QLLogger::PutMessage(QLLOG_ERROR, nullptr);
            Host::AddOutput(static_cast<QLLogLevel>(kSeveral), std::make_shared<Recorder>());
            for (const int levels : c.lines)
                levels == kFlush ? QLLogger::FlushLogs()
                                 : QLLogger::PutMessage(static_cast<QLLogLevel>(levels), L"x");
        };
        EXPECT_EQ(c.calls, CallsDuring(static_cast<QLLogLevel>(c.mask), log)) << c.what;
    }
}

TEST(Logger, OutputsOfALevelHaveALineInTheOrderOfRegistrationAndAreReleasedByTheClose) {
    static std::wstring order;
    order.clear();
    struct Unclosable : OnWrite {
        using OnWrite::OnWrite;
        void Close() override { throw 1; }
    };
    const auto first = std::make_shared<Unclosable>([] { order += L'1'; });
    const auto second = std::make_shared<OnWrite>([] { order += L'2'; });
    QLLogger::InitializeLog(first, QLLOG_INFO);
    QLLogger::InitializeLog(second, QLLOG_INFO);
    for (const wchar_t* text : {L"x", L"dropped"}) {
        QLLogger::PutMessage(QLLOG_INFO, text);
        QLLogger::CloseLogs();
    }
    EXPECT_EQ(L"12", order);
    EXPECT_EQ((Calls{L"4:x", L"close"}), second->calls);
    EXPECT_EQ(2, first.use_count() + second.use_count());
}

TEST(Logger, AThrowingOutputCostsTheLaterOutputsThatLineAlone) {
    static bool throws;
    throws = true;
    const std::uint32_t before = QLLogger::LostLines();
    QLLogger::InitializeLog(std::make_shared<OnWrite>([] {
                                if (std::exchange(throws, false)) throw std::runtime_error("full");
                            }),
                            QLLOG_INFO);
    EXPECT_EQ(
        (Calls{L"1:1 line was lost: an output failed\n", L"1:second", L"close", L"close"}),
        CallsDuring(QLLOG_ERROR | QLLOG_INFO, [] {
            for (const auto& [level, text] : {std::pair(QLLOG_INFO, L"first"), {QLLOG_ERROR, L"second"}})
                QLLogger::PutMessage(level, text);
        }));
    EXPECT_EQ(before + 1, QLLogger::LostLines());
}

TEST(Logger, AnOutputMayLogRegisterAndCloseItselfAlsoByTheEndOfACopyOfTheLogger) {
    const auto output = std::make_shared<OnWrite>([] {
        QLLogger::InitializeLog(std::make_shared<Recorder>(), QLLOG_WARNING);
        QLLogger::PutMessage(QLLOG_WARNING, L"from inside");
        const Host host;
        QLLogger::CloseLogs();
    });
    QLLogger::InitializeLog(output, QLLOG_INFO);
    QLLogger::PutMessage(QLLOG_INFO, L"x");
    while (output.use_count() > 1) QLLogger::CloseLogs();
    // The close that the output queued may come behind that one, but comes before this.
    QLLogger::CloseLogs();
    EXPECT_EQ(L"4:x", output->calls.front());
}

TEST(Logger, TakesMessagesOfAHostAsOftenAsItQueuesThem) {
    EXPECT_EQ((Calls{L"4:text", L"4:text", L"flush", L"4:copied", L"close"}), CallsDuring(QLLOG_INFO, [] {
                  struct Unknown : LogMessage {
                      Unknown() : LogMessage(static_cast<MessageType>(3)) {}
                  };
                  const auto message = std::make_shared<WriteLogMessage>(QLLOG_INFO, L"text");
                  Host::PushEvent(message);
                  Host::PushEvent(message);
                  Host::PushEvent(nullptr);
                  Host::PushEvent(std::make_shared<Unknown>());
                  Host::PushEvent(std::make_shared<FlushLogMessage>());
                  const WriteLogMessage original(QLLOG_INFO, L"copied");
                  Host::PushEvent(std::make_shared<WriteLogMessage>(original));
              }));
}

TEST(Logger, AnIdleWriterWakesForALineAndFlushesWhatBuffersWhenTheQueueRunsEmpty) {
    struct Buffered : IBufferedLogOutput {
        void Write(QLLogLevel, const wchar_t*) override { isWritten = true; }
        void Flush() override { isFlushed = isWritten.load(); }
        void Close() override {}
        std::atomic<bool> isWritten = false, isFlushed = false;
    };
    const auto buffered = std::make_shared<Buffered>();
    QLLogger::InitializeLog(buffered, QLLOG_INFO);
    const Calls calls = CallsDuring(QLLOG_INFO, [&] {
        ::Sleep(60);
        QLLogger::PutMessage(QLLOG_INFO, L"x");
        for (int i = 0; i < 1000 && !buffered->isFlushed; ++i) ::Sleep(10);
    });
    EXPECT_TRUE(buffered->isFlushed);
    EXPECT_EQ((Calls{L"4:x", L"close"}), calls) << "an output that does not buffer is left alone";
}

TEST(Logger, ABoundedBacklogDropsLinesAndSaysSoBeforeTheNext) {
    const std::uint32_t before = QLLogger::LostLines();
    const auto gate = HoldTheWriter();
    QLLogger::SetBacklogLimit(kTwoLines, QLLogBacklog::kDrop);
    const std::wstring half(200, L'x');
    Host::PushEvent(std::make_shared<WriteLogMessage>(QLLOG_INFO, L"a host's"));  // is not bounded
    for (int i = 0; i < 14; ++i) QLLogger::PutMessage(QLLOG_INFO, half.c_str());
    EXPECT_EQ(before + 12, QLLogger::LostLines());
    QLLogger::SetBacklogLimit(0, QLLogBacklog::kDrop);
    gate->isOpen = true;
    QLLogger::CloseLogs();
    EXPECT_EQ((Calls{L"4:held", L"4:12 lines were lost: the backlog was full\n", L"4:a host's", L"4:" + half,
                     L"4:" + half, L"close"}),
              gate->calls);
}

TEST(Logger, ABoundedBacklogMakesCallersWait) {
    const auto gate = HoldTheWriter();
    QLLogger::SetBacklogLimit(kTwoLines, QLLogBacklog::kWait);
    std::atomic<int> put = 0;
    std::thread caller([&put] {
        for (; put < 100; ++put) QLLogger::PutMessage(QLLOG_INFO, std::wstring(200, L'x').c_str());
        QLLogger::PutMessage(QLLOG_INFO, std::wstring(2000, L'x').c_str());  // more than the bound, alone
    });
    ::Sleep(50);
    EXPECT_GE(3, put) << "the bound is at two lines or so";
    gate->isOpen = true;
    caller.join();
    QLLogger::CloseLogs();
    QLLogger::SetBacklogLimit(0, QLLogBacklog::kWait);
    EXPECT_EQ(103u, gate->calls.size()) << "held, 100, the long one, close";
}

TEST(Logger, EachThreadsLinesComeInItsOrderNoneMissingNoneTwiceAndEveryCloseReturns) {
    constexpr int kThreads = 8, kLines = 20'000;
    Calls calls = CallsDuring(QLLOG_INFO, [] {
        OnThreads(kThreads, [](int thread) {
            for (int i = 0; i < kLines; ++i) {
                QLLogger::PutMessage(QLLOG_INFO,
                                     (std::to_wstring(thread) + L' ' + std::to_wstring(i)).c_str());
                if (i % 2'000 == 0) QLLogger::FlushLogs();
                if (i % 1'000 == 0) QLLogger::InitializeLog(std::make_shared<Recorder>(), QLLOG_WARNING);
            }
        });
        OnThreads(kThreads, [](int) {
            for (int i = 0; i < 20; ++i) QLLogger::CloseLogs();
        });
    });
    EXPECT_EQ(L"close", calls.back());
    calls.pop_back();
    EXPECT_EQ(std::size_t{kThreads * 10}, std::erase(calls, L"flush"));
    int next[kThreads] = {};
    for (const std::wstring& call : calls) {
        const int thread = call[2] - L'0';  // "4:thread number"
        ASSERT_EQ(next[thread]++, std::stoi(call.substr(4))) << thread;
    }
    EXPECT_EQ(std::size_t{kThreads * kLines}, calls.size());
}
