#include <gtest/gtest.h>

#include <cstdlib>
#include <numeric>
#include <random>
#include <sstream>

#include "tests/support/start_process.h"
#include "tests/support/test_folder.h"

namespace {

constexpr DWORD kEnded = 5;  // what the children answer
constexpr DWORD kPatience = 60'000;

std::wstring BesideThisProgram(const wchar_t* name) {
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).replace_filename(name).wstring();
}

ql::UniqueKernelHandle Start(const wchar_t* program, const std::wstring& first, const std::wstring& file) {
    return StartProcess(L'"' + BesideThisProgram(program) + L"\" \"" + first + L"\" \"" + file + L'"');
}

DWORD ExitCode(const ql::UniqueKernelHandle& process) {
    DWORD code = 0;
    if (::WaitForSingleObject(process.get(), kPatience) != WAIT_OBJECT_0) {
        ADD_FAILURE() << "the child hangs";
        ::TerminateProcess(process.get(), 1);
    }
    ::GetExitCodeProcess(process.get(), &code);
    return code;
}

// "0\r\n1\r\n…" after a byte-order mark.
std::string Lines(int count) {
    std::string lines = "\xEF\xBB\xBF";
    for (int i = 0; i < count; ++i) lines += std::to_string(i) + "\r\n";
    return lines;
}

// The numbers of the entries of a rolling log, in their order; -1 for one that is cut.
void AddEntries(std::vector<int>& entries, const std::string& bytes) {
    std::istringstream stream(bytes.substr(0, 3) == "\xEF\xBB\xBF" ? bytes.substr(3) : bytes);
    const std::string stars = std::string(53, '*') + "\r";
    std::string last;
    for (std::string line; std::getline(stream, line); last = line) {
        const bool isNumber = !line.empty() && std::isdigit(static_cast<unsigned char>(line[0]));
        if (line == stars && !last.empty() && std::isdigit(static_cast<unsigned char>(last[0]))) {
            entries.push_back(std::stoi(last));
        } else if (!isNumber && !line.starts_with("#") && line != stars) {
            entries.push_back(-1);
        }
    }
}

std::vector<int> Counted(std::size_t count) {
    std::vector<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

struct Way {
    const wchar_t* name;
    int rounds;
    int lines = 20'000;
};
constexpr Way kWays[] = {
    {L"return", 3},
    {L"thread", 3},
    {L"static", 3, 40'000},
    {L"early", 3},
    {L"killed when idle", 1},
    {L"exits first", 3},
    {L"exits last", 3},
    {L"exits in close first", 3},
    {L"closes slowly", 3},
    {L"closes slowly, alone", 3},
    {L"closes from within", 3},
    {L"races", 20},
};

}  // namespace

TEST(WaysOut, LoseNoLine) {
    for (const Way& way : kWays) {
        const TestFolder folder;
        const std::wstring file = folder / L"way.log";
        // A longer race: QL_RACES=1000 test_logging --gtest_filter=WaysOut.LoseNoLine
        const char* const races = std::wstring_view(way.name) == L"races" ? std::getenv("QL_RACES") : nullptr;
        for (int i = races ? std::atoi(races) : way.rounds; i > 0; --i) {
            EXPECT_EQ(kEnded, ExitCode(Start(L"logging_child.exe", way.name, file))) << way.name;
            // Two texts of megabytes would fill the screen.
            EXPECT_TRUE(Lines(way.lines) == BytesOf(file))
                << way.name << ": " << BytesOf(file).size() << " bytes";
        }
    }
}

TEST(WaysOut, AFreedLibraryStaysAndLosesNoLine) {
    const TestFolder folder;
    const std::wstring library = BesideThisProgram(L"Quillet.Platform.Native.Util.dll");
    for (int i = 0; i < 5; ++i) {
        const auto process = Start(L"logging_loader.exe", library, folder / L"way.log");
        EXPECT_EQ(kEnded, ExitCode(process));
        EXPECT_TRUE(Lines(20'000) == BytesOf(folder / L"way.log"));
    }
}

TEST(WaysOut, ARollOverCutShortLosesNoEntry) {
    for (int round = 0; round < 10; ++round) {
        const TestFolder folder;
        EXPECT_EQ(kEnded, ExitCode(Start(L"logging_child.exe", L"rolling", folder / L"r.log")));
        std::vector<int> entries;
        for (int backup = 1000; backup > 0; --backup) {
            AddEntries(entries, BytesOf(folder / (L"r" + std::to_wstring(backup) + L".bak").c_str()));
        }
        AddEntries(entries, BytesOf(folder / L"r.log"));
        ASSERT_EQ(Counted(500), entries);
    }
}

TEST(WaysOut, AKilledProcessLeavesWholeEntriesAndAtMostOneCut) {
    std::mt19937 random(20260721);
    std::uniform_int_distribution<DWORD> pause(0, 60);
    for (int round = 0; round < 20; ++round) {
        const TestFolder folder;
        const std::wstring file = folder / L"r.log";
        const auto process = Start(L"logging_child.exe", L"killed", file);
        for (int i = 0; i < 6000 && !std::filesystem::exists(file + L".closed"); ++i) ::Sleep(5);
        ::Sleep(pause(random));
        ::TerminateProcess(process.get(), 1);
        ::WaitForSingleObject(process.get(), kPatience);
        std::vector<int> entries;
        AddEntries(entries, BytesOf(folder / L"r1.bak"));
        AddEntries(entries, BytesOf(file));
        if (!entries.empty() && entries.back() == -1) entries.pop_back();
        ASSERT_GE(entries.size(), 1000u) << round;
        ASSERT_EQ(Counted(entries.size()), entries) << round;
    }
}
