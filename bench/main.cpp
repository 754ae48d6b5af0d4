// Runs the registered benchmarks and then prints, for each work, how every peer stands to the library's own
// implementation. Works are named "work/implementation", the library's own first, or "work" where there is
// no peer. bench/summary.py reads these lines.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

struct Row {
    std::string implementation;
    double nanoseconds;
};

struct Work {
    std::string name;
    std::vector<Row> rows;
};

class RatioReporter : public benchmark::ConsoleReporter {
  public:
    RatioReporter() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) Collect(run);
    }

    void Finalize() override {
        std::printf("\n%-44s | %-30s | %14s | %11s\n", "work", "implementation", "ns", "peer / ours");
        for (const Work& work : works_) Print(work);
    }

  private:
    static constexpr const char* kWanted = "median";

    // With repetitions only the median counts; without, the one run does.
    void Collect(const Run& run) {
        if (run.error_occurred) return;
        const bool repeated = run.repetitions > 1;
        if (repeated && run.aggregate_name != kWanted) return;
        const std::string& name = run.run_name.function_name;
        const std::size_t slash = name.rfind('/');
        std::string work = name.substr(0, slash);
        if (!run.run_name.args.empty()) work += '/' + run.run_name.args;
        if (!run.run_name.threads.empty()) work += '/' + run.run_name.threads;
        const double unit = benchmark::GetTimeUnitMultiplier(run.time_unit);
        Of(work).rows.push_back({slash == std::string::npos ? "ours" : name.substr(slash + 1),
                                 run.GetAdjustedRealTime() / unit * 1e9});
    }

    Work& Of(const std::string& name) {
        const auto known =
            std::find_if(works_.begin(), works_.end(), [&](const Work& w) { return w.name == name; });
        return known != works_.end() ? *known : works_.emplace_back(Work{name, {}});
    }

    static void Print(const Work& work) {
        for (const Row& row : work.rows) {
            std::printf("%-44s | %-30s | %14.1f | %11.2f\n", work.name.c_str(), row.implementation.c_str(),
                        row.nanoseconds, row.nanoseconds / work.rows.front().nanoseconds);
        }
    }

    std::vector<Work> works_;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
