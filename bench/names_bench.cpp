// Take a thousand names apart and put each together again: drive names beside the standard library's paths,
// which know no others on this system, and names of all kinds.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "names/file_name.h"
#include "names/file_type.h"

namespace {

constexpr int kNames = 1000;

std::vector<std::wstring> Names(bool mixed) {
    std::vector<std::wstring> names;
    for (int i = 0; i < kNames; ++i) {
        const std::wstring number = std::to_wstring(i);
        switch (mixed ? i % 3 : 0) {
            case 0:
                names.push_back(L"C:\\Program Files\\Templates\\Group " + number + L"\\Letter.docx");
                break;
            case 1: names.push_back(L"\\\\server\\share\\answers\\Client " + number + L".anx"); break;
            default: names.push_back(L"http://server/interviews/page" + number + L".htm?x=1#top"); break;
        }
    }
    return names;
}

// `roundTrip` returns the length of the name that it put together again.
template <class RoundTrip>
void Run(benchmark::State& state, const std::vector<std::wstring>& names, RoundTrip roundTrip) {
    for (const std::wstring& name : names) {
        if (roundTrip(name) != name.size()) throw std::logic_error("a name changed on its way");
    }
    for (auto _ : state) {
        for (const std::wstring& name : names) benchmark::DoNotOptimize(roundTrip(name));
    }
    state.SetItemsProcessed(state.iterations() * kNames);
}

std::size_t OursRoundTrip(const std::wstring& text) {
    return QLFileName(text.c_str()).GetPathAndFileName().length();
}

// The parts that a file name has, without putting them together again.
std::size_t StandardParts(const std::wstring& text) {
    const std::filesystem::path path(text);
    benchmark::DoNotOptimize(path.root_name());
    const std::size_t separator = 1;
    return path.parent_path().native().size() + separator + path.stem().native().size() +
           path.extension().native().size();
}

// Construction alone: the least that the peer can do.
std::size_t StandardConstruction(const std::wstring& text) {
    return std::filesystem::path(text).native().size();
}

void OursMixed(benchmark::State& state) {
    Run(state, Names(true), OursRoundTrip);
}

void OursDrive(benchmark::State& state) {
    Run(state, Names(false), OursRoundTrip);
}

void StandardDriveParts(benchmark::State& state) {
    Run(state, Names(false), StandardParts);
}

void StandardDriveConstruction(benchmark::State& state) {
    Run(state, Names(false), StandardConstruction);
}

void OursKinds(benchmark::State& state) {
    const std::vector<std::wstring> texts = Names(true);
    const std::vector<QLFileName> names = [&] {
        std::vector<QLFileName> parsed;
        for (const std::wstring& text : texts) parsed.emplace_back(text.c_str());
        return parsed;
    }();
    for (auto _ : state) {
        for (const QLFileName& name : names) benchmark::DoNotOptimize(GetFileType(name));
    }
    state.SetItemsProcessed(state.iterations() * kNames);
}

BENCHMARK(OursMixed)->Name("1000 mixed names, parse and compose/ours");
BENCHMARK(OursDrive)->Name("1000 names, parse and compose/ours");
BENCHMARK(StandardDriveParts)->Name("1000 names, parse and compose/std::filesystem, parts only");
BENCHMARK(StandardDriveConstruction)
    ->Name("1000 names, parse and compose/std::filesystem, construction only");
BENCHMARK(OursKinds)->Name("1000 names, kinds/ours");

}  // namespace
