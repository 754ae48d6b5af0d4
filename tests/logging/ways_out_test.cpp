#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "tests/support/start_process.h"
#include "tests/support/test_folder.h"

namespace {

constexpr DWORD kEnded = 5;  // what the children answer
constexpr DWORD kPatience = 60'000;

ql::UniqueKernelHandle Start(const wchar_t* program, const std::wstring& way, const std::wstring& file,
                             const std::wstring& offset = L"") {
    wchar_t own[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, own, MAX_PATH);
    const std::wstring path = std::filesystem::path(own).replace_filename(program);
    return StartProcess(L'"' + path + L"\" \"" + way + L"\" \"" + file + L"\" " + offset);
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

// The numbers of the entries of a rolling log, r.log, in their order; -1 for one that is cut. Where the end
// cuts a roll-over short, the first backup may be the newest file.
std::vector<int> EntriesOf(const TestFolder& folder, bool isMainNewest = true) {
    std::string bytes;
    for (int i = 1000; i > 1; --i) bytes += BytesOf(folder / (L"r" + std::to_wstring(i) + L".bak").c_str());
    const std::string backup = BytesOf(folder / L"r1.bak"), main = BytesOf(folder / L"r.log");
    std::istringstream stream(bytes + (isMainNewest ? backup + main : main + backup));
    const std::string stars = std::string(53, '*') + "\r", mark = "\xEF\xBB\xBF";
    std::vector<int> entries;
    int last = -1;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(mark)) line.erase(0, mark.size());
        const bool isNumber = !line.empty() && std::isdigit(static_cast<unsigned char>(line[0]));
        const bool isHeader = line.empty() || line.starts_with("#");
        if (line == stars ? last >= 0 : !isNumber && !isHeader) entries.push_back(line == stars ? last : -1);
        last = isNumber ? std::stoi(line) : -1;
    }
    return entries;
}

constexpr wchar_t kChild[] = L"logging_child.exe";
struct Way {
    std::wstring name;
    int rounds = 3;
    int lines = 20'000;
    const wchar_t* program = kChild;
};
std::vector<Way> Ways() {
    std::vector<Way> ways = {{L"static", 3, 40'000},
                             {L"killed when idle", 1},
                             {L"without threads", 3, 100},
                             {L"within the loader", 1, 100},
                             {L"races", 20},
                             {L"frees the library", 5, 20'000, L"logging_loader.exe"}};
    for (const wchar_t* way :
         {L"return", L"thread", L"early", L"exits first", L"exits last", L"exits in close first",
          L"closes slowly", L"closes slowly, alone", L"closes from within", L"amid loading",
          L"first as a library ends", L"as a library ends"})
        ways.push_back({way});
    return ways;
}

// More of them: QL_RACES=1000
int Rounds(int usual) {
    const char* const wanted = std::getenv("QL_RACES");
    return wanted ? std::atoi(wanted) : usual;
}

// Where processes end that log: anywhere, or at the instructions of the library that QL_STOPS names.
std::vector<std::wstring> Places() {
    const wchar_t* const stops = ::_wgetenv(L"QL_STOPS");
    if (!stops) return std::vector<std::wstring>(static_cast<std::size_t>(Rounds(10)));
    std::wistringstream all(stops);
    return {std::istream_iterator<std::wstring, wchar_t>(all), {}};
}

}  // namespace

TEST(WaysOut, LoseNoLine) {
    for (const Way& way : Ways()) {
        const TestFolder folder;
        const std::wstring file = folder / L"way.log";
        for (int i = way.name == L"races" ? Rounds(way.rounds) : way.rounds; i > 0; --i) {
            EXPECT_EQ(kEnded, ExitCode(Start(way.program, way.name, file))) << way.name;
            // Two texts of megabytes would fill the screen.
            EXPECT_TRUE(Lines(way.lines) == BytesOf(file))
                << way.name << ": " << BytesOf(file).size() << " bytes";
        }
    }
}

TEST(WaysOut, AnEndAmidLinesAndRollOversLosesNoneThatWasQueued) {
    constexpr DWORD kMet = 1 << 24;  // is added where a thread came by the instruction
    bool isAnyMet = false;
    const std::vector<std::wstring> places = Places();
    for (const std::wstring& place : places) {
        SCOPED_TRACE(testing::PrintToString(place));
        const TestFolder folder;
        const DWORD code = ExitCode(Start(kChild, L"amid lines", folder / L"r", place)), queued = code % kMet;
        isAnyMet = isAnyMet || code >= kMet;
        std::vector<int> entries = EntriesOf(folder);
        if (!std::is_sorted(entries.begin(), entries.end())) entries = EntriesOf(folder, false);
        EXPECT_LE(queued, entries.size());
        for (std::size_t i = 0; i < entries.size(); ++i) ASSERT_EQ(static_cast<int>(i), entries[i]);
        const std::string bytes = BytesOf(folder / L"r");
        const auto lines = std::count(bytes.begin(), bytes.end(), '\n');
        EXPECT_LE(queued, static_cast<DWORD>(lines));
        EXPECT_TRUE(Lines(static_cast<int>(lines)) == bytes) << bytes.size() << " bytes";
    }
    EXPECT_EQ(!places.front().empty(), isAnyMet);
}
