// Whole calls of qlutil over large files, as support makes them: how long each takes, and the most memory
// that its process held.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/unique_handle.h"
#include "platform/win32.h"
#include "zip/dynazip.h"

#include <psapi.h>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMega = 1'000'000;

// A file for the time of a benchmark.
class File {
  public:
    explicit File(const char* name) : path_(fs::temp_directory_path() / name) {}
    ~File() { fs::remove(path_); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    std::ofstream Write() const { return std::ofstream(path_, std::ios::binary); }
    std::wstring Quoted() const { return L'"' + path_.wstring() + L'"'; }

  private:
    const fs::path path_;
};

// A folder of so many files of a kilobyte each, some of which pack well, and the archive that they go into.
class Tree {
  public:
    explicit Tree(int count) {
        fs::create_directory(folder_);
        for (int i = 0; i < count; ++i) {
            files_.push_back((folder_ / (std::to_string(i) + ".txt")).wstring());
            std::ofstream out(files_.back().c_str(), std::ios::binary);
            for (int k = 0; k < 1024; ++k) out << static_cast<char>('a' + (k * k + i * k % (i % 7 + 1)) % 26);
        }
    }
    ~Tree() {
        fs::remove_all(folder_);
        fs::remove(archive_);
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    void DropArchive() const { fs::remove(archive_); }
    std::wstring Archive() const { return archive_.wstring(); }
    const std::vector<std::wstring>& Files() const { return files_; }
    std::wstring Arguments() const {
        return L'"' + archive_.wstring() + L"\" \"" + folder_.wstring() + L"\\*\"";
    }

  private:
    const fs::path folder_ = fs::temp_directory_path() / "ql_bench_added";
    const fs::path archive_ = fs::temp_directory_path() / "ql_bench_added.zip";
    std::vector<std::wstring> files_;
};

// Runs qlutil to its end, with what it prints going nowhere, and answers the bytes that it held at most, as
// far as looks at it from time to time tell.
std::size_t MostHeldBy(const std::wstring& arguments) {
    SECURITY_ATTRIBUTES handedOn = {sizeof handedOn, nullptr, TRUE};
    const ql::UniqueFileHandle nowhere(
        ::CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_WRITE, &handedOn, OPEN_EXISTING, 0, nullptr));
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = nowhere.get();
    std::wstring line = L"qlutil.exe " + arguments;
    PROCESS_INFORMATION started = {};
    if (!::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                          &started))
        throw std::runtime_error("qlutil does not start");
    const ql::UniqueKernelHandle process(started.hProcess), thread(started.hThread);
    std::size_t most = 0;
    while (::WaitForSingleObject(process.get(), 5) == WAIT_TIMEOUT) {
        PROCESS_MEMORY_COUNTERS counters = {};
        ::GetProcessMemoryInfo(process.get(), &counters, sizeof counters);
        most = std::max<std::size_t>(most, counters.PeakWorkingSetSize);
    }
    DWORD status = 0;
    if (!::GetExitCodeProcess(process.get(), &status) || status != 0)
        throw std::runtime_error("qlutil fails");
    return most;
}

void Measure(benchmark::State& state, const std::wstring& arguments) {
    std::size_t most = 0;
    for (auto _ : state) most = std::max(most, MostHeldBy(arguments));
    state.counters["MB held"] = static_cast<double>(most) / kMega;
}

// A log of so many megabytes.
void ShowLog(benchmark::State& state) {
    const File log("ql_bench_shown.log");
    const auto bytes = static_cast<std::size_t>(state.range(0)) * kMega;
    std::ofstream out = log.Write();
    std::size_t written = 0;
    for (int i = 0; written < bytes; ++i) {
        const std::string entry = "[07/21/26 14:02:33][1234][host.cpp:17]-a message number " +
                                  std::to_string(i) + " of the usual length\r\n";
        out << entry;
        written += entry.size();
    }
    out.close();
    Measure(state, L"--json log show " + log.Quoted());
}

void AddFiles(benchmark::State& state, const std::function<void(const Tree&)>& add) {
    const Tree tree(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        tree.DropArchive();
        state.ResumeTiming();
        add(tree);
    }
}

void AddByQlutil(benchmark::State& state) {
    AddFiles(state, [](const Tree& tree) { MostHeldBy(L"zip add " + tree.Arguments()); });
}

// The same by the class, in this process: what the host adds to it is the start of a program.
void AddByTheClass(benchmark::State& state) {
    if (!Dynazip::IsZipDllLoaded()) throw std::runtime_error("there is no engine");
    AddFiles(state, [](const Tree& tree) {
        std::vector<ZIPSOURCE> sources;
        for (const std::wstring& file : tree.Files()) sources.push_back({file.c_str(), nullptr, 0});
        const int count = static_cast<int>(sources.size());
        if (!Dynazip::AddFilesToZip(tree.Archive().c_str(), sources.data(), count, 6))
            throw std::runtime_error("the files are not added");
    });
}

// One file of so many megabytes, of which half can be packed away.
void AddLarge(benchmark::State& state) {
    const File plain("ql_bench_plain.bin"), archive("ql_bench_large.zip");
    std::ofstream out = plain.Write();
    std::mt19937 random;
    std::string block(kMega, '\0');
    for (auto i = state.range(0); i > 0; --i) {
        std::generate_n(block.begin(), kMega / 2, [&random] { return static_cast<char>(random()); });
        out << block;
    }
    out.close();
    Measure(state, L"zip add " + archive.Quoted() + L' ' + plain.Quoted());
}

std::string LittleEndian(std::uint64_t number, int bytes) {
    std::string text;
    for (; bytes > 0; --bytes, number >>= 8) text += static_cast<char>(number);
    return text;
}

// An archive of empty members with names of so many bytes.
void ListEmptyMembers(benchmark::State& state, std::size_t count, std::size_t nameBytes) {
    const File archive("ql_bench_empty_members.zip");
    // What both headers have: version, no flags, stored, a date, no contents, the name's length.
    const std::string fields = LittleEndian(20, 2) + LittleEndian(0x5a21'0000'0000'0000, 8) +
                               std::string(12, '\0') + LittleEndian(nameBytes, 4);
    std::string members, directory;
    for (std::size_t i = 0; i < count; ++i) {
        std::string name = std::to_string(i);
        name.resize(nameBytes, 'n');
        directory += "PK\1\2" + LittleEndian(20, 2) + fields + std::string(10, '\0') +
                     LittleEndian(members.size(), 4) + name;
        members += "PK\3\4" + fields + name;
    }
    archive.Write() << members << directory << "PK\5\6" << LittleEndian(0, 4) << LittleEndian(count, 2)
                    << LittleEndian(count, 2) << LittleEndian(directory.size(), 4)
                    << LittleEndian(members.size(), 4) << LittleEndian(0, 2);
    Measure(state, L"--json zip list " + archive.Quoted());
}

// Next to nothing but a directory of so many megabytes.
void ListLongNames(benchmark::State& state) {
    constexpr std::size_t kNameBytes = 60'000;
    ListEmptyMembers(state, static_cast<std::size_t>(state.range(0)) * kMega / kNameBytes, kNameBytes);
}

void ListManyMembers(benchmark::State& state) {
    ListEmptyMembers(state, static_cast<std::size_t>(state.range(0)), 20);
}

// What every call costs.
void Start(benchmark::State& state) {
    Measure(state, L"--json version");
}

BENCHMARK(Start)->Name("qlutil version")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(AddByQlutil)
    ->Name("qlutil zip add, files of 1 KB/qlutil")
    ->Arg(2000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(AddByTheClass)
    ->Name("qlutil zip add, files of 1 KB/one engine call")
    ->Arg(2000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(AddLarge)
    ->Name("qlutil zip add, MB")
    ->Arg(1)
    ->Arg(10)
    ->Arg(100)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ShowLog)
    ->Name("qlutil log show, MB")
    ->RangeMultiplier(10)
    ->Range(1, 100)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ListManyMembers)
    ->Name("qlutil zip list as JSON, members")
    ->Arg(100)
    ->Arg(8000)
    ->Arg(65534)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ListLongNames)
    ->Name("qlutil zip list, MB of names")
    ->Arg(1)
    ->Arg(8)
    ->Arg(30)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
