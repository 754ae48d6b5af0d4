#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>

#include "platform/unique_handle.h"
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
    std::wstring line = L'"' + BesideThisProgram(program) + L"\" \"" + first + L"\" \"" + file + L'"';
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process)) {
        return {};
    }
    ::CloseHandle(process.hThread);
    return ql::UniqueKernelHandle(process.hProcess);
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

// The file without the line that stands twice, where the writer was ended amid one.
std::string LinesOf(const std::wstring& file) {
    std::istringstream stream(BytesOf(file));
    std::string lines;
    std::string last;
    int repeated = 0;
    for (std::string line; std::getline(stream, line); last = line) {
        if (line == last) {
            ++repeated;
        } else {
            lines += line + '\n';
        }
    }
    EXPECT_LE(repeated, 1);
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

std::vector<int> Counted(int count) {
    std::vector<int> numbers(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) numbers[static_cast<std::size_t>(i)] = i;
    return numbers;
}

}  // namespace

class WayOut : public testing::TestWithParam<const wchar_t*> {};

TEST_P(WayOut, LosesNoLine) {
    const TestFolder folder;
    const std::wstring file = folder / L"way.log";
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(kEnded, ExitCode(Start(L"logging_child.exe", GetParam(), file)));
        const bool twice = std::wstring_view(GetParam()) == L"static";
        EXPECT_EQ(Lines(20'000) + (twice ? Lines(20'000).substr(3) : ""), LinesOf(file));
    }
}

INSTANTIATE_TEST_SUITE_P(Logger, WayOut,
                         testing::Values(L"return", L"thread", L"static", L"output", L"early"),
                         [](const auto& way) {
                             const std::wstring name = way.param;
                             return std::string(name.begin(), name.end());
                         });

TEST(WaysOut, AFreedLibraryStaysAndLosesNoLine) {
    const TestFolder folder;
    const std::wstring library = BesideThisProgram(L"Quillet.Platform.Native.Util.dll");
    for (int i = 0; i < 5; ++i) {
        const auto process = Start(L"logging_loader.exe", library, folder / L"way.log");
        EXPECT_EQ(kEnded, ExitCode(process));
        EXPECT_EQ(Lines(20'000), LinesOf(folder / L"way.log"));
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
        // A backup may have been taken for the main file.
        std::sort(entries.begin(), entries.end());
        ASSERT_EQ(Counted(500), entries);
    }
}

TEST(WaysOut, AKilledProcessLeavesWholeEntriesAndAtMostOneCut) {
    std::mt19937 random(20260721);
    std::uniform_int_distribution<DWORD> pause(0, 60);
    for (int round = 0; round < 50; ++round) {
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
        ASSERT_EQ(Counted(static_cast<int>(entries.size())), entries) << round;
    }
}
