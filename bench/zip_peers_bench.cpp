// Adds and extracts a large tree and many small files natively, beside libzip and minizip on the same files
// and disk.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <minizip/unzip.h>
#include <minizip/zip.h>
#include <unistd.h>
#include <zip.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "bench/zip_files.h"
#include "bench/zip_rows.h"
#include "engine/archive.h"
#include "engine/archive_writer.h"
#include "engine/entry_reader.h"
#include "engine/result.h"

namespace {

namespace fs = std::filesystem;
using namespace ql::zip;

constexpr std::size_t kBlock = 256u << 10;

void Check(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "zip_peers_bench: %s\n", what);
    std::exit(1);
}

struct Descriptor {
    Descriptor(const std::string& path, int flags) : value(::open(path.c_str(), flags, 0600)) {
        Check(value >= 0, "open");
    }
    ~Descriptor() { ::close(value); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int value;
};

void WriteAll(int file, const void* data, std::size_t size, std::uint64_t offset) {
    Check(::pwrite(file, data, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size), "write");
}

class PosixInput final : public InputFile {
  public:
    explicit PosixInput(const std::string& path) : file_(path, O_RDONLY), size_(fs::file_size(path)) {}
    std::uint64_t Size() const override { return size_; }
    std::size_t ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) override {
        const ssize_t count = ::pread(file_.value, into, size, static_cast<off_t>(offset));
        Check(count >= 0, "read");
        return static_cast<std::size_t>(count);
    }

  private:
    Descriptor file_;
    std::uint64_t size_;
};

class PosixOutput final : public OutputFile {
  public:
    explicit PosixOutput(const std::string& path) : file_(path, O_WRONLY | O_CREAT | O_TRUNC) {}
    void WriteAt(std::uint64_t offset, const std::uint8_t* data, std::size_t size) override {
        WriteAll(file_.value, data, size, offset);
    }

  private:
    Descriptor file_;
};

// A folder of files, and what becomes of them.
struct Tree {
    Tree(const char* treeName, std::size_t count, std::size_t size)
        : name(treeName), files(MixedFiles(count, size)) {
        top = fs::temp_directory_path() / ("ql_zip_bench_" + std::to_string(::getpid()) + treeName);
        fs::create_directories(top / "in");
        fs::create_directories(top / "out");
        for (const BenchFile& file : files)
            WriteAll(Descriptor(In(file), O_WRONLY | O_CREAT).value, file.content.data(), file.content.size(),
                     0);
    }
    ~Tree() { fs::remove_all(top); }
    std::string In(const BenchFile& file) const { return top / "in" / file.name; }
    std::string Out(const std::string& file) const { return top / "out" / file; }
    std::string Archive() const { return top / "a.zip"; }
    void DropOut() const {
        for (const BenchFile& file : files) fs::remove(Out(file.name));
    }

    std::string name;
    fs::path top;
    std::vector<BenchFile> files;
};

void OursAdds(const Tree& tree, int level) {
    PosixOutput output(tree.Archive());
    ArchiveWriter writer(output);
    for (const BenchFile& file : tree.files) {
        PosixInput source(tree.In(file));
        writer.Add({file.name, 0, 0, level}, source, [](std::uint64_t) {});
    }
    writer.Finish("");
}

void OursExtracts(const Tree& tree) {
    PosixInput file(tree.Archive());
    WindowedInput window(file);
    const Archive archive(window);
    EntryReader reader(window, archive);
    for (const Entry& entry : archive.Entries()) {
        PosixOutput output(tree.Out(entry.name));
        std::uint64_t done = 0;
        reader.Read(entry, [&](const std::uint8_t* data, std::size_t size) {
            output.WriteAt(done, data, size);
            done += size;
        });
    }
}

void LibzipAdds(const Tree& tree, int level) {
    zip_t* archive = zip_open(tree.Archive().c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    Check(archive != nullptr, "zip_open");
    for (const BenchFile& file : tree.files) {
        zip_source_t* source = zip_source_file(archive, tree.In(file).c_str(), 0, -1);
        const zip_int64_t index = zip_file_add(archive, file.name.c_str(), source, 0);
        Check(index >= 0, "zip_file_add");
        zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_DEFLATE,
                                 static_cast<zip_uint32_t>(level));
    }
    Check(zip_close(archive) == 0, "zip_close");
}

void LibzipExtracts(const Tree& tree) {
    zip_t* archive = zip_open(tree.Archive().c_str(), ZIP_RDONLY, nullptr);
    Check(archive != nullptr, "zip_open");
    std::vector<char> block(kBlock);
    for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
        const auto index = static_cast<zip_uint64_t>(i);
        const Descriptor output(tree.Out(zip_get_name(archive, index, 0)), O_WRONLY | O_CREAT | O_TRUNC);
        zip_file_t* member = zip_fopen_index(archive, index, 0);
        std::uint64_t done = 0;
        for (zip_int64_t count; (count = zip_fread(member, block.data(), kBlock)) > 0;
             done += static_cast<std::uint64_t>(count))
            WriteAll(output.value, block.data(), static_cast<std::size_t>(count), done);
        Check(zip_fclose(member) == 0, "zip_fclose");
    }
    zip_discard(archive);
}

void MinizipAdds(const Tree& tree, int level) {
    zipFile archive = zipOpen64(tree.Archive().c_str(), APPEND_STATUS_CREATE);
    Check(archive != nullptr, "zipOpen64");
    std::vector<std::uint8_t> block(kBlock);
    for (const BenchFile& file : tree.files) {
        PosixInput source(tree.In(file));
        Check(zipOpenNewFileInZip(archive, file.name.c_str(), nullptr, nullptr, 0, nullptr, 0, nullptr,
                                  Z_DEFLATED, level) == ZIP_OK,
              "zipOpenNewFileInZip");
        std::uint64_t done = 0;
        for (std::size_t count; (count = source.ReadAt(done, block.data(), kBlock)) > 0; done += count)
            zipWriteInFileInZip(archive, block.data(), static_cast<unsigned>(count));
        zipCloseFileInZip(archive);
    }
    Check(zipClose(archive, nullptr) == ZIP_OK, "zipClose");
}

void MinizipExtracts(const Tree& tree) {
    unzFile archive = unzOpen64(tree.Archive().c_str());
    Check(archive != nullptr, "unzOpen64");
    std::vector<char> block(kBlock);
    char name[256];
    for (int state = unzGoToFirstFile(archive); state == UNZ_OK; state = unzGoToNextFile(archive)) {
        unzGetCurrentFileInfo64(archive, nullptr, name, sizeof name, nullptr, 0, nullptr, 0);
        const Descriptor output(tree.Out(name), O_WRONLY | O_CREAT | O_TRUNC);
        unzOpenCurrentFile(archive);
        std::uint64_t done = 0;
        for (int count; (count = unzReadCurrentFile(archive, block.data(), kBlock)) > 0;
             done += static_cast<std::uint64_t>(count))
            WriteAll(output.value, block.data(), static_cast<std::size_t>(count), done);
        Check(unzCloseCurrentFile(archive) == UNZ_OK, "unzCloseCurrentFile");
    }
    unzClose(archive);
}

void RegisterTree(const Tree& tree) {
    const auto dropArchive = [&tree] { fs::remove(tree.Archive()); };
    for (int level : {1, 6, 9}) {
        const std::string work = "zip_add_" + tree.name + "_level_" + std::to_string(level);
        Register(work + "/ours", dropArchive, [&tree, level] { OursAdds(tree, level); });
        Register(work + "/libzip", dropArchive, [&tree, level] { LibzipAdds(tree, level); });
        Register(work + "/minizip", dropArchive, [&tree, level] { MinizipAdds(tree, level); });
    }
    const std::string work = "zip_extract_" + tree.name;
    const auto prepare = [&tree] {
        tree.DropOut();
        if (!fs::exists(tree.Archive())) OursAdds(tree, 6);
    };
    Register(work + "/ours", prepare, [&tree] { OursExtracts(tree); });
    Register(work + "/libzip", prepare, [&tree] { LibzipExtracts(tree); });
    Register(work + "/minizip", prepare, [&tree] { MinizipExtracts(tree); });
}

// The trees are made when the first benchmark is registered, and go with the process.
const bool registered = [] {
    static const Tree large("100MB", 100, 1u << 20), small("10000x1KB", 10000, 1024);
    RegisterTree(large);
    RegisterTree(small);
    return true;
}();

}  // namespace
