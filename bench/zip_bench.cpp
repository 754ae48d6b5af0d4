// Adds and extracts a large tree and many small files, beside the bare zlib calls on the same bytes: in
// memory, and with the same files read and written. Prints the peak of the process's memory after the
// engines' own work.
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/zip_files.h"
#include "bench/zip_rows.h"
#include "engine/archive_writer.h"
#include "engine/unzip_command.h"
#include "engine/zip_command.h"
#include "platform/win32.h"

#include <psapi.h>

namespace {

using Buffer = std::vector<std::uint8_t>;

struct Handle {
    HANDLE value;
    ~Handle() { ::CloseHandle(value); }
};

void Check(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "zip_bench: %s\n", what);
    std::exit(1);
}

std::string TempFolder() {
    char path[MAX_PATH];
    ::GetTempPathA(MAX_PATH, path);
    return std::string(path) + "ql_zip_bench";
}

void WriteWhole(const std::string& path, const std::uint8_t* data, std::size_t size) {
    const Handle file{::CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr)};
    DWORD written = 0;
    Check(::WriteFile(file.value, data, static_cast<DWORD>(size), &written, nullptr), "cannot write");
}

Buffer ReadWhole(const std::string& path) {
    const Handle file{
        ::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr)};
    Buffer bytes(::GetFileSize(file.value, nullptr));
    DWORD read = 0;
    Check(::ReadFile(file.value, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr),
          "cannot read");
    return bytes;
}

// A folder of files, and what becomes of them.
struct Tree {
    Tree(const char* treeName, std::size_t count, std::size_t size)
        : name(treeName), files(MixedFiles(count, size)) {
        const std::string top = TempFolder();
        folder = top + "\\" + name;
        archive = folder + ".zip";
        out = folder + ".out";
        for (const std::string& path : {top, folder, out}) ::CreateDirectoryA(path.c_str(), nullptr);
        for (const BenchFile& file : files) WriteWhole(In(file), Bytes(file), file.content.size());
        DropOut();  // what a run that was cut short left
    }
    ~Tree() {
        DropOut();
        ::RemoveDirectoryA(out.c_str());
        for (const BenchFile& file : files) ::DeleteFileA(In(file).c_str());
        ::DeleteFileA(archive.c_str());
        ::RemoveDirectoryA(folder.c_str());
    }
    void DropOut() const {
        for (const BenchFile& file : files) ::DeleteFileA(Out(file).c_str());
    }
    static const std::uint8_t* Bytes(const BenchFile& file) {
        return reinterpret_cast<const std::uint8_t*>(file.content.data());
    }
    std::string In(const BenchFile& file) const { return folder + "\\" + file.name; }
    std::string Out(const BenchFile& file) const { return out + "\\" + file.name; }

    std::string name, folder, archive, out;
    std::vector<BenchFile> files;
};

void EngineAdds(const Tree& tree, int level) {
    ::DeleteFileA(tree.archive.c_str());
    const std::string items = "\"" + tree.folder + "\\*\"";
    ZIPCMDSTRUCT command{};
    command.zipStructSize = sizeof command;
    command.function = ZIP_ADD;
    command.lpszZIPFile = tree.archive.c_str();
    command.lpszItemList = items.c_str();
    command.compFactor = level;
    command.noDirectoryNamesFlag = 1;
    Check(ql::zip::RunZip(command) == ql::zip::Result::kOk, "the engine does not add");
}

void EngineExtracts(const Tree& tree) {
    UNZIPCMDSTRUCT command{};
    command.unzipStructSize = sizeof command;
    command.function = UNZIP_EXTRACT;
    command.lpszZIPFile = tree.archive.c_str();
    command.lpszFilespec = "*";
    command.lpszDestination = tree.out.c_str();
    Check(ql::zip::RunUnzip(command) == ql::zip::Result::kOk, "the engine does not extract");
}

// One stream for all, as a program without an archive format would have it; check sums as every archive has
// them.
class Bare {
  public:
    explicit Bare(int level) { deflateInit2(&deflate_, level, Z_DEFLATED, -MAX_WBITS, 8, 0); }
    ~Bare() { deflateEnd(&deflate_); }
    Bare(const Bare&) = delete;
    Bare& operator=(const Bare&) = delete;

    Buffer Pack(const std::uint8_t* data, std::size_t size) {
        deflateReset(&deflate_);
        Buffer packed(deflateBound(&deflate_, static_cast<uLong>(size)));
        deflate_.next_in = const_cast<Bytef*>(data);
        deflate_.avail_in = static_cast<uInt>(size);
        deflate_.next_out = packed.data();
        deflate_.avail_out = static_cast<uInt>(packed.size());
        Check(deflate(&deflate_, Z_FINISH) == Z_STREAM_END, "zlib does not pack");
        packed.resize(packed.size() - deflate_.avail_out);
        benchmark::DoNotOptimize(crc32(0, data, static_cast<uInt>(size)));
        return packed;
    }

  private:
    z_stream deflate_{};
};

class BareInflater {
  public:
    BareInflater() { inflateInit2(&inflate_, -MAX_WBITS); }
    ~BareInflater() { inflateEnd(&inflate_); }
    BareInflater(const BareInflater&) = delete;
    BareInflater& operator=(const BareInflater&) = delete;

    void Unpack(const Buffer& packed, Buffer& plain) {
        inflateReset(&inflate_);
        inflate_.next_in = const_cast<Bytef*>(packed.data());
        inflate_.avail_in = static_cast<uInt>(packed.size());
        inflate_.next_out = plain.data();
        inflate_.avail_out = static_cast<uInt>(plain.size());
        Check(inflate(&inflate_, Z_FINISH) == Z_STREAM_END, "zlib does not unpack");
        benchmark::DoNotOptimize(crc32(0, plain.data(), static_cast<uInt>(plain.size())));
    }

  private:
    z_stream inflate_{};
};

void BareAddsOnDisk(const Tree& tree, int level) {
    Bare bare(level);
    const Handle out{
        ::CreateFileA(tree.archive.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr)};
    for (const BenchFile& file : tree.files) {
        const Buffer plain = ReadWhole(tree.In(file)), packed = bare.Pack(plain.data(), plain.size());
        DWORD written = 0;
        Check(::WriteFile(out.value, packed.data(), static_cast<DWORD>(packed.size()), &written, nullptr),
              "cannot write");
    }
}

void BareAddsInMemory(const Tree& tree, int level) {
    Bare bare(level);
    for (const BenchFile& file : tree.files)
        benchmark::DoNotOptimize(bare.Pack(Tree::Bytes(file), file.content.size()));
}

std::vector<Buffer> PackAll(const Tree& tree) {
    Bare bare(6);
    std::vector<Buffer> packed;
    for (const BenchFile& file : tree.files)
        packed.push_back(bare.Pack(Tree::Bytes(file), file.content.size()));
    return packed;
}

void BareExtracts(const Tree& tree, const std::vector<Buffer>& packed, bool toDisk) {
    BareInflater inflater;
    Buffer plain(tree.files[0].content.size());
    for (std::size_t i = 0; i < packed.size(); ++i) {
        inflater.Unpack(packed[i], plain);
        if (toDisk) WriteWhole(tree.Out(tree.files[i]), plain.data(), plain.size());
    }
}

void PrintPeak(const std::string& when) {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
    std::printf("peak working set after %s: %u KB\n", when.c_str(),
                static_cast<unsigned>(counters.PeakWorkingSetSize / 1024));
}

void RegisterTree(const Tree& tree) {
    for (int level : {1, 6, 9}) {
        const std::string work = "zip_add_" + tree.name + "_level_" + std::to_string(level);
        Register(work + "/engine", [&tree, level] { EngineAdds(tree, level); });
        Register(work + "/zlib_on_disk", [&tree, level] { BareAddsOnDisk(tree, level); });
        Register(work + "/zlib_in_memory", [&tree, level] { BareAddsInMemory(tree, level); });
    }
    const std::string work = "zip_extract_" + tree.name;
    const auto dropOut = [&tree] { tree.DropOut(); };
    Register(
        work + "/engine",
        [&tree] {
            tree.DropOut();
            EngineAdds(tree, 6);
        },
        [&tree] { EngineExtracts(tree); });
    const auto packed = std::make_shared<std::vector<Buffer>>();
    const auto pack = [&tree, packed, dropOut] {
        dropOut();
        if (packed->empty()) *packed = PackAll(tree);
    };
    Register(work + "/zlib_on_disk", pack, [&tree, packed] { BareExtracts(tree, *packed, true); });
    Register(work + "/zlib_in_memory", pack, [&tree, packed] { BareExtracts(tree, *packed, false); });
}

// An archive of so many members of a few bytes, on the disk.
struct ManyMembers {
    explicit ManyMembers(std::size_t count)
        : path(TempFolder() + "\\" + std::to_string(count) + " members.zip") {
        struct Written final : ql::zip::OutputFile {
            void WriteAt(std::uint64_t offset, const std::uint8_t* data, std::size_t size) override {
                bytes.resize(static_cast<std::size_t>(offset));
                bytes.insert(bytes.end(), data, data + size);
            }
            Buffer bytes;
        } written;
        ql::zip::ArchiveWriter writer(written);
        for (std::size_t i = 0; i < count; ++i) {
            const std::string name = "f/" + std::to_string(i) + ".txt";
            ql::zip::MemoryInput content(reinterpret_cast<const std::uint8_t*>(name.data()), name.size());
            writer.Add({name, 0, 0, 0}, content, [](std::uint64_t) {});
        }
        writer.Finish("");
        WriteWhole(path, written.bytes.data(), written.bytes.size());
        last = "f/" + std::to_string(count - 1) + ".txt";
    }
    ~ManyMembers() { ::DeleteFileA(path.c_str()); }

    UNZIPCMDSTRUCT Command(std::int32_t function) const {
        UNZIPCMDSTRUCT command{};
        command.unzipStructSize = sizeof command;
        command.function = function;
        command.lpszZIPFile = path.c_str();
        command.lpszFilespec = last.c_str();
        return command;
    }

    std::string path, last;
};

int QL_ZIP_CALL Overlook(const ZIPMEMBER*, void*) {
    return 0;
}

constexpr char kOneMore[] = "f/one-more.txt";

void RegisterMembers(std::size_t count) {
    const auto members = std::make_shared<ManyMembers>(count);
    const auto named = [count](const char* what) {
        return "zip members, " + std::string(what) + '/' + std::to_string(count) + "/engine";
    };
    const auto ask = [members](std::int32_t function, std::int32_t index) {
        ZIPINFO info;
        char content[64];
        UNZIPCMDSTRUCT command = members->Command(function);
        command.index = index;
        command.zInfo = &info;
        command.lpMemBlock = content;
        command.lMemBlockSize = sizeof content;
        Check(ql::zip::RunUnzip(command) == ql::zip::Result::kOk, "the engine does not answer");
    };
    Register(named("list all"), [members] {
        UNZIPCMDSTRUCT command = members->Command(UNZIP_COUNT_ALL);
        command.index = -1;
        Check(ql::zip::RunUnzipEach(command, Overlook, nullptr) == ql::zip::Result::kOk,
              "the engine does not list");
    });
    Register(named("record by index"), [ask] { ask(UNZIP_INDEXED, 50); });
    Register(named("ask for one"), [ask] { ask(UNZIP_COUNT_MATCHING, -1); });
    Register(named("extract one"), [ask] { ask(UNZIP_FILE_TO_MEMORY, -1); });
    const auto change = [members](ZIPCMDSTRUCT command) {
        command.zipStructSize = sizeof command;
        command.lpszZIPFile = members->path.c_str();
        Check(ql::zip::RunZip(command) == ql::zip::Result::kOk, "the engine does not change the archive");
    };
    const auto addOne = [change] {
        char content[] = "content";
        ZIPCMDSTRUCT command{};
        command.function = ZIP_MEMORY_TO_FILE;
        command.lpszItemList = kOneMore;
        command.lpMemBlock = content;
        command.lMemBlockSize = sizeof content;
        change(command);
    };
    const auto deleteOne = [change] {
        ZIPCMDSTRUCT command{};
        command.function = ZIP_DELETE;
        command.lpszItemList = kOneMore;
        change(command);
    };
    Register(named("add one"), addOne);  // in the place of the former, but for the first
    Register(named("delete one"), addOne, deleteOne);
    Register(named("change comment"), [change] {
        ZIPCMDSTRUCT command{};
        command.function = ZIP_ADD;
        command.addCommentFlag = 1;
        command.lpszComment = "told";
        change(command);
    });
}

// The trees are made when the first benchmark is registered, and go with the process.
const bool registered = [] {
    static const Tree large("100MB", 100, 1u << 20), small("10000x1KB", 10000, 1024);
    PrintPeak("making the files");
    EngineAdds(large, 6);
    EngineExtracts(large);
    PrintPeak("100 MB added and extracted");
    RegisterTree(large);
    RegisterTree(small);
    for (const std::size_t count : {100u, 1000u, 8000u, 65534u, 1'000'000u}) RegisterMembers(count);
    return true;
}();

}  // namespace
