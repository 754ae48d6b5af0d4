// A line of twenty switches read by name, declarations included, beside option parsers with as many switches
// declared; those get the line split into words already. Then the time for a character of longer lines.
#include <benchmark/benchmark.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cxxopts.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "cmdline/command_switches.h"
#include "cmdline/main_switch_parser.h"

namespace {

// Ten flags and ten values of the main application, none of which claims another.
constexpr std::array kFlags = {"cd", "da", "la", "ni", "pr", "pb", "pd", "pw", "db", "register"};
constexpr std::array kValues = {"af", "df", "lf", "of", "ov", "pc", "ps", "pt", "tf", "desc"};
constexpr std::size_t kSwitches = kFlags.size() + kValues.size();

constexpr std::size_t kMainSwitches = 69;  // that the main application's parser declares

std::wstring Wide(const std::string& text) {
    return {text.begin(), text.end()};
}

std::string ValueOf(const std::string& name) {
    return "C:\\Files\\" + name + ".txt";
}

// As users write it.
std::wstring Line() {
    std::string line;
    for (const std::string name : kFlags) line += " /" + name;
    for (const std::string name : kValues) line += " /" + name + "=\"" + ValueOf(name) + '"';
    return Wide(line.substr(1));
}

// The same in the words of the other parsers, after the program's name.
std::vector<std::string> Words() {
    std::vector<std::string> words = {"program"};
    for (const std::string name : kFlags) words.push_back("--" + name);
    for (const std::string name : kValues) words.push_back("--" + name + "=" + ValueOf(name));
    return words;
}

std::vector<const char*> Pointers(const std::vector<std::string>& words) {
    std::vector<const char*> pointers;
    for (const std::string& word : words) pointers.push_back(word.c_str());
    return pointers;
}

// Switches that are declared and not on the line.
std::vector<std::string> Others(std::size_t declared) {
    std::vector<std::string> names;
    for (std::size_t i = kSwitches; i < declared; ++i) names.push_back("other" + std::to_string(i));
    return names;
}

void Require(bool holds) {
    if (!holds) throw std::logic_error("the line was not understood");
}

void ScanOurs(benchmark::State& state) {
    const std::wstring line = Line();
    std::vector<std::wstring> flags, values;
    for (const std::string name : kFlags) flags.push_back(Wide(name));
    for (const std::string name : kValues) values.push_back(Wide(name) + L'=');
    for (auto _ : state) {
        CCommandSwitches switches;
        for (const std::wstring& name : flags) switches.DeclareSwitch(name.c_str(), SWITCH_FLAG);
        for (const std::wstring& name : values) switches.DeclareSwitch(name.c_str(), SWITCH_VALUE);
        switches.Scan(line.c_str());
        for (const std::wstring& name : flags) Require(switches.IsSwitchSet(name.c_str()));
        for (const std::wstring& name : values) Require(switches.GetSwitchValue(name.c_str()) != nullptr);
    }
}

// With all that it makes of the values: full paths, in the folders of the user's preferences.
void MainOurs(benchmark::State& state) {
    const std::wstring line = Line();
    for (auto _ : state) {
        const QuilletCmdSwitchParser parser(line.c_str());
        Require(parser.IsPrint() && parser.GetTplPath() && parser.GetDescription());
    }
}

void Cli11(benchmark::State& state, std::size_t declared) {
    const std::vector<std::string> words = Words(), others = Others(declared);
    const std::vector<const char*> pointers = Pointers(words);
    for (auto _ : state) {
        CLI::App app;
        std::array<bool, kFlags.size()> flags = {};
        std::array<std::string, kValues.size()> values;
        bool other = false;
        for (std::size_t i = 0; i < flags.size(); ++i) app.add_flag(std::string("--") + kFlags[i], flags[i]);
        for (std::size_t i = 0; i < values.size(); ++i)
            app.add_option(std::string("--") + kValues[i], values[i]);
        for (const std::string& name : others) app.add_flag("--" + name, other);
        app.parse(static_cast<int>(pointers.size()), pointers.data());
        for (const bool flag : flags) Require(flag);
        for (const std::string& value : values) Require(!value.empty());
    }
}

void Cxxopts(benchmark::State& state, std::size_t declared) {
    const std::vector<std::string> words = Words(), others = Others(declared);
    const std::vector<const char*> pointers = Pointers(words);
    for (auto _ : state) {
        cxxopts::Options options("program");
        auto add = options.add_options();
        for (const char* const name : kFlags) add(name, "");
        for (const char* const name : kValues) add(name, "", cxxopts::value<std::string>());
        for (const std::string& name : others) add(name, "");
        const auto result = options.parse(static_cast<int>(pointers.size()), pointers.data());
        for (const char* const name : kFlags) Require(result[name].as<bool>());
        for (const char* const name : kValues) Require(!result[name].as<std::string>().empty());
    }
}

void LongLineOurs(benchmark::State& state) {
    const auto characters = static_cast<std::size_t>(state.range(0));
    std::wstring line;
    while (line.size() < characters) line += Line() + L' ';
    line.resize(characters);
    CCommandSwitches switches;
    for (const std::string name : kFlags) switches.DeclareSwitch(Wide(name).c_str(), SWITCH_FLAG);
    for (const std::string name : kValues) switches.DeclareSwitch((Wide(name) + L'=').c_str(), SWITCH_VALUE);
    for (auto _ : state) switches.Scan(line.c_str());
    using benchmark::Counter;
    state.counters["per character"] =
        Counter(static_cast<double>(characters), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

constexpr long kKilo = 1000;

BENCHMARK(ScanOurs)->Name("20 switches, 20 declared/ours");
BENCHMARK_CAPTURE(Cli11, few, kSwitches)->Name("20 switches, 20 declared/CLI11");
BENCHMARK_CAPTURE(Cxxopts, few, kSwitches)->Name("20 switches, 20 declared/cxxopts");
BENCHMARK(MainOurs)->Name("20 switches, 69 declared/ours, main application");
BENCHMARK_CAPTURE(Cli11, many, kMainSwitches)->Name("20 switches, 69 declared/CLI11");
BENCHMARK_CAPTURE(Cxxopts, many, kMainSwitches)->Name("20 switches, 69 declared/cxxopts");
BENCHMARK(LongLineOurs)->Name("scan a line/ours")->Arg(kKilo)->Arg(10 * kKilo)->Arg(100 * kKilo);

}  // namespace
