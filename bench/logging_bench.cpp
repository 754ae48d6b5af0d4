// The log beside spdlog's asynchronous logger with the blocking policy: what a line costs its caller, and how
// long lines take from the first call to the closed file. Lines are counted in the files afterwards.
#include <benchmark/benchmark.h>
#include <x86intrin.h>

#include <spdlog/async.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "logging/log_line.h"
#include "logging/log_outputs.h"
#include "platform/win32.h"

namespace {

using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::duration<double, std::nano>;
namespace fs = std::filesystem;

constexpr int kBackups = 40;
constexpr int kRollBytes = 1'000'000;

fs::path Folder() {
    return fs::temp_directory_path() / ("ql_log_bench_" + std::to_string(::GetCurrentProcessId()));
}

void StartAnew() {
    fs::remove_all(Folder());
    fs::create_directories(Folder());
}

std::int64_t LinesWritten() {
    std::int64_t lines = 0;
    for (const auto& file : fs::directory_iterator(Folder())) {
        std::ifstream stream(file.path(), std::ios::binary);
        for (std::string line; std::getline(stream, line);)
            lines += line.find("message number") != std::string::npos;
    }
    return lines;
}

struct Ours {
    static void StartPlain() { QLLogger::InitializeLog((Folder() / "plain.log").c_str(), QLLOG_INFO); }
    static void StartRolling() {
        QLLogger::InitializeLog(
            std::make_shared<QLLoggerOutputs::RollingFileOutput>((Folder() / "r.log").c_str(), L"bench", L"",
                                                                 L"", kBackups, kRollBytes, 1u),
            QLLOG_INFO);
    }
    static void Put(int number) {
        QLLoggerLevelInserter(QLLOG_INFO, __FILE__, __LINE__)
            << L"a message number " << number << L" of the usual length" << LogMessageFinish();
    }
    static void Finish() { QLLogger::CloseLogs(); }
};

struct Spdlog {
    static void StartPlain() {
        Start<spdlog::sinks::basic_file_sink_mt>((Folder() / "plain.log").string(), true);
    }
    // Each entry reaches the system at once, as those of our rolling file do.
    static void StartRolling() {
        Start<spdlog::sinks::rotating_file_sink_mt>((Folder() / "r.log").string(), kRollBytes, kBackups);
        logger->flush_on(spdlog::level::info);
    }
    template <class Sink, class... Arguments>
    static void Start(Arguments... arguments) {
        pool = std::make_shared<spdlog::details::thread_pool>(8192, 1);
        logger = std::make_shared<spdlog::async_logger>("bench", std::make_shared<Sink>(arguments...), pool,
                                                        spdlog::async_overflow_policy::block);
        logger->set_pattern("[%D %T][%t][%s:%#]-%v");
    }
    static void Put(int number) {
        logger->log(spdlog::source_loc{__FILE__, __LINE__, ""}, spdlog::level::info,
                    "a message number {} of the usual length", number);
    }
    static void Finish() {
        logger.reset();
        pool.reset();  // waits until all is written
    }

    static inline std::shared_ptr<spdlog::details::thread_pool> pool;
    static inline std::shared_ptr<spdlog::async_logger> logger;
};

template <class Work>
void OnThreads(int count, Work work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) threads.emplace_back(work, i);
    for (std::thread& thread : threads) thread.join();
}

void CountLines(benchmark::State& state, std::int64_t expected) {
    const std::int64_t lines = LinesWritten();
    state.counters["lines"] = static_cast<double>(lines);
    if (lines != expected) state.SkipWithError("lines are missing");
}

// Single calls are shorter than the system's clock is fine, and reading that costs more than they do. So they
// are timed by the processor's own counter, whose rate and cost are measured here.
class CallTimer {
  public:
    using Ticks = unsigned long long;
    static Ticks Now() { return __rdtsc(); }

    CallTimer() {
        const auto begin = Clock::now();
        const Ticks first = Now();
        while (Clock::now() - begin < std::chrono::milliseconds(100)) {
        }
        nanosecondsPerTick_ = Nanoseconds(Clock::now() - begin).count() / static_cast<double>(Now() - first);
        std::vector<Ticks> costs(10'001);
        for (Ticks& cost : costs) {
            const Ticks start = Now();
            cost = Now() - start;
        }
        std::nth_element(costs.begin(), costs.begin() + 5'000, costs.end());
        ownCost_ = costs[5'000];
    }

    double ToNanoseconds(Ticks measured) const {
        return static_cast<double>(measured - std::min(measured, ownCost_)) * nanosecondsPerTick_;
    }

  private:
    double nanosecondsPerTick_;
    Ticks ownCost_;
};

void Check(bool allLinesAreThere) {
    if (allLinesAreThere) return;
    std::fputs("logging_bench: lines are missing\n", stderr);
    std::exit(1);
}

using Costs = std::vector<CallTimer::Ticks>;
constexpr int kLinesOfABurst = 20'000;

// Adds the time of every single call.
template <class Logger>
void Burst(int threads, Costs& costs) {
    StartAnew();
    Logger::StartPlain();
    std::vector<Costs> times(static_cast<std::size_t>(threads), Costs(kLinesOfABurst));
    OnThreads(threads, [&times](int thread) {
        Costs& mine = times[static_cast<std::size_t>(thread)];
        for (int i = 0; i < kLinesOfABurst; ++i) {
            const CallTimer::Ticks start = CallTimer::Now();
            Logger::Put(i);
            mine[static_cast<std::size_t>(i)] = CallTimer::Now() - start;
        }
    });
    Logger::Finish();
    Check(LinesWritten() == std::int64_t{threads} * kLinesOfABurst);
    for (const Costs& mine : times) costs.insert(costs.end(), mine.begin(), mine.end());
}

struct BothCosts {
    Costs ours, spdlogs;
};

// Both in turn, in many short bursts: what else the machine does meets both alike.
const BothCosts& CostsInTurn(int threads) {
    constexpr int kBursts = 15;
    static std::map<int, BothCosts> measured;
    const auto [entry, isNew] = measured.try_emplace(threads);
    BothCosts& both = entry->second;
    for (int i = 0; isNew && i < kBursts; ++i) {
        Burst<Ours>(threads, both.ours);
        Burst<Spdlog>(threads, both.spdlogs);
    }
    return both;
}

// The median is what the table shows.
void CallerCost(benchmark::State& state, Costs BothCosts::*whose) {
    static const CallTimer timer;
    const int threads = static_cast<int>(state.range(0));
    for (auto _ : state) {
        Costs costs = CostsInTurn(threads).*whose;
        std::sort(costs.begin(), costs.end());
        const auto at = [&](double part) {
            return timer.ToNanoseconds(
                costs[static_cast<std::size_t>(part * static_cast<double>(costs.size()))]);
        };
        state.SetIterationTime(at(0.5) / 1e9);
        state.counters["p99_ns"] = at(0.99);
        state.counters["p99.9_ns"] = at(0.999);
    }
}

// From the first call to the closed file.
template <class Logger>
void Throughput(benchmark::State& state, void (*start)(), int lines) {
    for (auto _ : state) {
        StartAnew();
        start();
        const auto begin = Clock::now();
        for (int i = 0; i < lines; ++i) Logger::Put(i);
        Logger::Finish();
        const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
        state.SetIterationTime(seconds);
        state.counters["lines/s"] = lines / seconds;
        CountLines(state, lines);
    }
}

template <class Logger>
void PlainFile(benchmark::State& state) {
    Throughput<Logger>(state, Logger::StartPlain, 1'000'000);
}

template <class Logger>
void RollingFile(benchmark::State& state) {
    Throughput<Logger>(state, Logger::StartRolling, 100'000);
}

// Holds the writer until the backlog is complete.
class Gate : public ILogOutput {
  public:
    explicit Gate(HANDLE open) : open_(open) {}
    void Write(QLLogLevel, const wchar_t*) override {
        if (open_) ::WaitForSingleObject(std::exchange(open_, nullptr), INFINITE);
    }
    void Flush() override {}
    void Close() override {}

  private:
    HANDLE open_;
};

// The memory that the process has of its own, counted region by region: not every system fills in its
// summary.
double PrivateMegabytes() {
    std::size_t bytes = 0;
    const char* at = nullptr;
    MEMORY_BASIC_INFORMATION region = {};
    while (::VirtualQuery(at, &region, sizeof region) == sizeof region) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
        const char* const next = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
        if (next <= at) break;
        at = next;
    }
    return static_cast<double>(bytes) / 1e6;
}

void Backlog(benchmark::State& state) {
    constexpr int kLines = 1'000'000;
    const HANDLE open = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    for (auto _ : state) {
        QLLogger::InitializeLog(std::make_shared<Gate>(open), QLLOG_INFO);
        const double before = PrivateMegabytes();
        for (int i = 0; i < kLines; ++i) Ours::Put(i);
        state.counters["MB"] = PrivateMegabytes() - before;
        ::SetEvent(open);
        QLLogger::CloseLogs();
    }
    ::CloseHandle(open);
}

}  // namespace

BENCHMARK_CAPTURE(CallerCost, ours, &BothCosts::ours)
    ->Name("log_caller_median/ours")
    ->Arg(1)
    ->Arg(4)
    ->Arg(8)
    ->Iterations(1)
    ->UseManualTime();
BENCHMARK_CAPTURE(CallerCost, spdlog, &BothCosts::spdlogs)
    ->Name("log_caller_median/spdlog")
    ->Arg(1)
    ->Arg(4)
    ->Arg(8)
    ->Iterations(1)
    ->UseManualTime();
BENCHMARK_TEMPLATE(PlainFile, Ours)->Name("log_1000000_plain/ours")->Iterations(1)->UseManualTime();
BENCHMARK_TEMPLATE(PlainFile, Spdlog)->Name("log_1000000_plain/spdlog")->Iterations(1)->UseManualTime();
BENCHMARK_TEMPLATE(RollingFile, Ours)->Name("log_100000_rolling/ours")->Iterations(1)->UseManualTime();
BENCHMARK_TEMPLATE(RollingFile, Spdlog)->Name("log_100000_rolling/spdlog")->Iterations(1)->UseManualTime();
BENCHMARK(Backlog)->Name("log_backlog_1000000/ours")->Iterations(1);
