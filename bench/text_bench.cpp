// Builds lines, splits texts and fills tables, beside what hosts would use without the library.
#include <benchmark/benchmark.h>
#include <fmt/xchar.h>

#include <array>
#include <deque>
#include <sstream>
#include <string>
#include <string_view>

#include "text/speed_str.h"
#include "text/string_table.h"
#include "text/token_string.h"

namespace {

// Ten parts that make a line of `units` units.
std::array<RWWString, 10> PartsOf(std::size_t units) {
    std::array<RWWString, 10> parts;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::size_t length = units / 10 + (i % 2 ? 3 : 0) - (i % 2 ? 0 : 3);
        parts[i] = RWWString(std::wstring(length, static_cast<wchar_t>(L'a' + i)));
    }
    return parts;
}

// `build` returns the line's first unit, so that the line must exist.
template <class Build>
void BuildLine(benchmark::State& state, Build build) {
    const auto parts = PartsOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(build(parts));
}

void BuilderOurs(benchmark::State& state) {
    BuildLine(state, [](const auto& parts) {
        CSpeedStr line;
        for (const RWWString& part : parts) line += part;
        return *line.data();
    });
}

void BuilderString(benchmark::State& state) {
    BuildLine(state, [](const auto& parts) {
        std::wstring line;
        for (const RWWString& part : parts) line += part.view();
        return *line.c_str();
    });
}

void BuilderStream(benchmark::State& state) {
    BuildLine(state, [](const auto& parts) {
        std::wostringstream line;
        for (const RWWString& part : parts) line << part.view();
        return *line.view().data();
    });
}

void BuilderFmt(benchmark::State& state) {
    BuildLine(state, [](const auto& parts) {
        fmt::wmemory_buffer line;
        for (const RWWString& part : parts) line.append(part.data(), part.data() + part.length());
        line.push_back(L'\0');
        return *line.data();
    });
}

BENCHMARK(BuilderOurs)->Name("build_line/CSpeedStr")->Arg(120)->Arg(480);
BENCHMARK(BuilderString)->Name("build_line/std_wstring")->Arg(120)->Arg(480);
BENCHMARK(BuilderStream)->Name("build_line/std_wostringstream")->Arg(120)->Arg(480);
BENCHMARK(BuilderFmt)->Name("build_line/fmt_wmemory_buffer")->Arg(120)->Arg(480);

constexpr const wchar_t* kDelimiters = L" ,;";

// 1 MB of words of one to twelve units.
RWWString Words() {
    std::wstring text;
    for (std::size_t i = 0; text.size() < (1U << 20) / sizeof(char16_t); ++i) {
        text.append(1 + i * 7 % 12, static_cast<wchar_t>(L'a' + i % 26));
        text += i % 5 ? L" " : L", ";
    }
    return text;
}

void TokensOurs(benchmark::State& state) {
    TokenString text(Words(), kDelimiters);
    for (auto _ : state) {
        text.Init();
        for (RWWString token = text.Next(); !token.isNull(); token = text.Next())
            benchmark::DoNotOptimize(token);
    }
}

void TokensFindFirstOf(benchmark::State& state) {
    const RWWString words = Words();
    const std::wstring_view text = words.view();
    for (auto _ : state) {
        for (std::size_t at = text.find_first_not_of(kDelimiters); at != std::wstring_view::npos;) {
            const std::size_t end = text.find_first_of(kDelimiters, at);
            std::wstring token(text.substr(at, end - at));
            benchmark::DoNotOptimize(token);
            at = text.find_first_not_of(kDelimiters, end);
        }
    }
}

// The same into a text that is kept.
void TokensIntoKeptOurs(benchmark::State& state) {
    TokenString text(Words(), kDelimiters);
    RWWString token;
    for (auto _ : state) {
        for (text.Init(); text.Next(token);) benchmark::DoNotOptimize(token);
    }
}

void TokensIntoKeptFindFirstOf(benchmark::State& state) {
    const RWWString words = Words();
    const std::wstring_view text = words.view();
    std::wstring token;
    for (auto _ : state) {
        for (std::size_t at = text.find_first_not_of(kDelimiters); at != std::wstring_view::npos;) {
            const std::size_t end = text.find_first_of(kDelimiters, at);
            token.assign(text.substr(at, end - at));
            benchmark::DoNotOptimize(token);
            at = text.find_first_not_of(kDelimiters, end);
        }
    }
}

// A table that grows at its front and is emptied from there: growth rows, each of so many entries.
void FrontOurs(benchmark::State& state) {
    const RWWString text(L"an entry of the table");
    for (auto _ : state) {
        QLStringTable table;
        for (std::int64_t i = 0; i < state.range(0); ++i) table.PrependString(text);
        while (table.NumEntries() > 0) table.DeleteEntry(0);
    }
}

void FrontDeque(benchmark::State& state) {
    const std::wstring text(L"an entry of the table");
    for (auto _ : state) {
        std::deque<std::wstring> table;
        for (std::int64_t i = 0; i < state.range(0); ++i) table.push_front(text);
        while (!table.empty()) table.pop_front();
    }
}

BENCHMARK(FrontOurs)->Name("table, front/QLStringTable")->RangeMultiplier(10)->Range(100, 100'000);
BENCHMARK(FrontDeque)->Name("table, front/std_deque")->RangeMultiplier(10)->Range(100, 100'000);

BENCHMARK(TokensOurs)->Name("split_1MB/TokenString");
BENCHMARK(TokensFindFirstOf)->Name("split_1MB/find_first_of");
BENCHMARK(TokensIntoKeptOurs)->Name("split_1MB, kept text/TokenString");
BENCHMARK(TokensIntoKeptFindFirstOf)->Name("split_1MB, kept text/find_first_of");

}  // namespace
