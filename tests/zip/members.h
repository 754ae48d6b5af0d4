#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "engine/archive.h"
#include "engine/archive_writer.h"
#include "engine/dos_time.h"
#include "engine/entry_reader.h"

// What tests and fuzzers of archives share.
namespace ql::zip {

struct Member {
    std::string name, content;
    std::uint32_t attributes = 32;
    int level = 0;
    DosTime time = ToDosTime({2020, 6, 15, 12, 30, 10});
};

// How much of the content the writer told of in the end.
inline std::uint64_t Add(ArchiveWriter& writer, const Member& member) {
    MemoryInput source(reinterpret_cast<const std::uint8_t*>(member.content.data()), member.content.size());
    std::uint64_t told = 0;
    writer.Add({member.name, member.time, member.attributes, member.level}, source,
               [&](std::uint64_t done) { told = done; });
    return told;
}

inline void Write(OutputFile& file, const std::vector<Member>& members, const std::string& comment) {
    ArchiveWriter writer(file);
    for (const Member& member : members) Add(writer, member);
    writer.Finish(comment);
}

struct MemoryOutput final : OutputFile {
    void WriteAt(std::uint64_t offset, const std::uint8_t* data, std::size_t size) override {
        bytes.resize(std::max(bytes.size(), static_cast<std::size_t>(offset) + size));
        std::copy_n(data, size, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    }
    Bytes bytes;
};

inline std::string ContentOf(InputFile& file, const Archive& archive, std::size_t index) {
    std::string content;
    EntryReader(file, archive)
        .Read(archive.Entries().at(index),
              [&](const std::uint8_t* data, std::size_t size) { content.append(data, data + size); });
    return content;
}

// An archive in memory, which must be one.
struct MemoryArchive {
    explicit MemoryArchive(const Bytes& content)
        : bytes(content), file(bytes.data(), bytes.size()), archive(file) {}
    std::string Content(std::size_t index) { return ContentOf(file, archive, index); }
    const Bytes bytes;
    MemoryInput file;
    const Archive archive;
};

}  // namespace ql::zip
