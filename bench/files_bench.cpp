// Walking, copying and asking about files beside the system's bare calls and the standard library.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/host_shell.h"
#include "files/directory_iterator.h"
#include "files/file_copy.h"
#include "platform/unique_handle.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>

namespace {

namespace fs = std::filesystem;

constexpr int kEntries = 20'000;
constexpr int kNames = 10'000;

// Empty files named "entry 0.txt" and so on.
void PutEntries(const std::wstring& folder, int count) {
    const std::wstring last = std::to_wstring(count - 1);
    if (RunInHostShell(folder, L"seq -f 'entry %.0f.txt' 0 " + last + L" | xargs -d '\\n' touch")) return;
    for (int i = 0; i < count; ++i) {
        const std::wstring path = folder + L"\\entry " + std::to_wstring(i) + L".txt";
        ql::UniqueFileHandle(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    }
}

// Made once for all works, and removed with the program.
class Folder {
  public:
    Folder() {
        fs::create_directories(path_);
        PutEntries(path_.wstring(), kEntries);
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    static const fs::path& Path() {
        static const Folder folder;
        return folder.path_;
    }

  private:
    fs::path path_ =
        fs::temp_directory_path() / ("ql_files_bench_" + std::to_string(::GetCurrentProcessId()));
};

// Every entry's full name is made, since that is what a walk is for.
void WalkOurs(benchmark::State& state) {
    const QLFileName pattern((Folder::Path() / L"*").c_str());
    for (auto _ : state) {
        CDirectoryIterator walk;
        QLFileName entry;
        int entries = 0;
        for (bool more = walk.First(pattern, &entry); more; more = walk.Next(&entry)) ++entries;
        if (entries != kEntries) state.SkipWithError("entries are missing");
    }
}

void WalkBare(benchmark::State& state) {
    const std::wstring folder = Folder::Path().wstring() + L'\\';
    for (auto _ : state) {
        WIN32_FIND_DATAW entry;
        const ql::UniqueFindHandle walk(::FindFirstFileW((folder + L'*').c_str(), &entry));
        int entries = 0;
        do {
            const std::wstring_view name(entry.cFileName);
            entries += name != L"." && name != L"..";
        } while (::FindNextFileW(walk.get(), &entry));
        if (entries != kEntries) state.SkipWithError("entries are missing");
    }
}

void WalkStandard(benchmark::State& state) {
    for (auto _ : state) {
        int entries = 0;
        for (const fs::directory_entry& entry : fs::directory_iterator(Folder::Path())) {
            benchmark::DoNotOptimize(entry.path().native().data());
            ++entries;
        }
        if (entries != kEntries) state.SkipWithError("entries are missing");
    }
}

BENCHMARK(WalkOurs)->Name("walk 20000 entries/quillet")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(WalkBare)->Name("walk 20000 entries/FindFirstFileW")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(WalkStandard)
    ->Name("walk 20000 entries/std::filesystem")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// A source of 256 MB that is made once, and its copy, which each round replaces.
struct Copying {
    std::wstring source = (Folder::Path().parent_path() / L"ql_files_bench.source").wstring();
    std::wstring destination = (Folder::Path().parent_path() / L"ql_files_bench.copy").wstring();

    Copying() {
        const std::string block(1 << 20, 'x');
        std::ofstream file(fs::path(source), std::ios::binary);
        for (int i = 0; i < 256; ++i) file << block;
    }
    ~Copying() {
        std::error_code ignored;
        fs::remove(source, ignored);
        fs::remove(destination, ignored);
    }
};

template <class Copy>
void RunCopy(benchmark::State& state, Copy copy) {
    static const Copying files;
    for (auto _ : state) {
        if (!copy(files.destination.c_str(), files.source.c_str())) state.SkipWithError("the copy failed");
        state.PauseTiming();
        ::DeleteFileW(files.destination.c_str());
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * (256LL << 20));
}

void CopyOurs(benchmark::State& state) {
    RunCopy(state, [](const wchar_t* destination, const wchar_t* source) {
        unsigned long error = 0;
        return MakeFileCopy(destination, source, 0, error) != 0;
    });
}

void CopyBare(benchmark::State& state) {
    RunCopy(state, [](const wchar_t* destination, const wchar_t* source) {
        return ::CopyFileW(source, destination, FALSE) != FALSE;
    });
}

BENCHMARK(CopyOurs)->Name("copy 256 MB/quillet")->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(CopyBare)
    ->Name("copy 256 MB/CopyFileW")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);

const std::vector<std::wstring>& Paths() {
    static const auto paths = [] {
        std::vector<std::wstring> all;
        for (int i = 0; i < kNames; ++i) {
            all.push_back((Folder::Path() / (L"entry " + std::to_wstring(i) + L".txt")).wstring());
        }
        return all;
    }();
    return paths;
}

const std::vector<QLFileName>& Names() {
    static const auto names = [] {
        std::vector<QLFileName> all;
        for (const std::wstring& path : Paths()) all.emplace_back(path.c_str());
        return all;
    }();
    return names;
}

template <class Asked, class Ask>
void RunAsking(benchmark::State& state, const std::vector<Asked>& names, Ask ask) {
    for (auto _ : state) {
        int there = 0;
        for (const Asked& name : names) there += ask(name);
        if (there != kNames) state.SkipWithError("files are missing");
    }
}

void ExistsOurs(benchmark::State& state) {
    RunAsking(state, Names(), [](const QLFileName& name) { return name.Exists() != 0; });
}

void ExistsBare(benchmark::State& state) {
    RunAsking(state, Paths(), [](const std::wstring& path) { return ::_waccess(path.c_str(), 0) == 0; });
}

void StatusOurs(benchmark::State& state) {
    RunAsking(state, Names(),
              [](const QLFileName& name) { return name.GetStatus() == QLFileName::StatusWritable; });
}

void StatusBare(benchmark::State& state) {
    RunAsking(state, Paths(), [](const std::wstring& path) {
        const DWORD attributes = ::GetFileAttributesW(path.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) != 0)
            return false;
        int file = -1;
        return ::_wsopen_s(&file, path.c_str(), _O_RDWR | _O_BINARY, _SH_DENYRW, 0) == 0 &&
               ::_close(file) == 0;
    });
}

// A path of so many characters in folders of one letter, shortened as far as it goes. The time for a
// character stays.
void FitOurs(benchmark::State& state) {
    const HDC dc = ::CreateCompatibleDC(nullptr);
    std::wstring path = L"C:";
    while (path.size() < static_cast<std::size_t>(state.range(0))) path += L"\\d";
    for (auto _ : state) {
        RWWString text(path);
        QLFileName::FitToWidth(dc, text, 0);
        if (text != L"C:\\...\\d") state.SkipWithError("the path was not shortened");
    }
    ::DeleteDC(dc);
    using benchmark::Counter;
    state.counters["per character"] =
        Counter(static_cast<double>(state.range(0)), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

BENCHMARK(FitOurs)
    ->Name("FitToWidth/quillet")
    ->Arg(1000)
    ->Arg(8000)
    ->Arg(64'000)
    ->Unit(benchmark::kMillisecond);

BENCHMARK(ExistsOurs)->Name("Exists of 10000/quillet")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ExistsBare)->Name("Exists of 10000/_waccess")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(StatusOurs)->Name("GetStatus of 10000/quillet")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(StatusBare)->Name("GetStatus of 10000/bare calls")->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
