#include "engine/unzip_command.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "engine/entry_name.h"
#include "engine/extraction.h"
#include "engine/item_list.h"
#include "engine/listed_archive.h"
#include "engine/windows_files.h"
#include "engine/windows_text.h"

namespace ql::zip {
namespace {

constexpr std::uint32_t kFileAttributes = 0x3f;
constexpr std::size_t kLastIndex = 0xffff;

struct OpenArchive {
    explicit OpenArchive(const char* path)
        : file(WideFromAnsi(path), Result::kMissing, Result::kCannotOpen), window(file), archive(window) {}
    WindowsInput file;
    WindowedInput window;
    Archive archive;
};

std::int32_t Count(std::size_t count) {
    return static_cast<std::int32_t>(count);
}

NamePatterns Wanted(const UNZIPCMDSTRUCT& command) {
    return NamePatterns(SplitItems(Utf8FromAnsi(command.lpszFilespec)), command.recurseFlag != 0);
}

std::uint32_t Narrow(std::uint64_t size) {
    Require(size <= 0xffffffff, Result::kTooBig);
    return static_cast<std::uint32_t>(size);
}

std::uint32_t AttributesOf(const Entry& entry) {
    return (entry.attributes & kFileAttributes) | (entry.IsEncrypted() ? ZIPINFO_ENCRYPTED : 0) |
           (IsLongName(LastPart(entry.name)) ? ZIPINFO_LONG_NAME : 0);
}

template <std::size_t size>
void CopyText(char (&into)[size], const std::string& text) {
    Require(text.size() < size, Result::kTooBig);
    std::memcpy(into, text.c_str(), text.size() + 1);
}

void Describe(const std::vector<Entry>& entries, std::size_t index, UNZIPCMDSTRUCT& command) {
    Require(command.zInfo, Result::kBadRequest);
    Require(index < entries.size() && index <= kLastIndex, Result::kOutOfBounds);
    const Entry& entry = entries[index];
    // The walk goes on even past a member that the record cannot express.
    command.index = static_cast<std::int32_t>(index);
    ZIPINFO info{};
    info.index = static_cast<std::uint16_t>(index);
    info.oSize = Narrow(entry.size);
    info.cSize = Narrow(entry.packedSize);
    info.cMethod = entry.method;
    info.cOption = entry.flags >> 1 & 3;
    info.crc_32 = entry.crc;
    CopyText(info.szDateTime, DosTimeText(entry.time));
    CopyText(info.szFileName, AnsiFromUtf8(entry.name));
    info.attr = AttributesOf(entry);
    *command.zInfo = info;
}

std::size_t IndexAfter(const UNZIPCMDSTRUCT& command) {
    Require(command.index >= -1, Result::kOutOfBounds);
    return static_cast<std::size_t>(std::int64_t{command.index} + 1);
}

void DescribeNextMatching(const std::vector<Entry>& entries, UNZIPCMDSTRUCT& command) {
    const NamePatterns wanted = Wanted(command);
    std::size_t index = IndexAfter(command);
    while (index < entries.size() && !wanted.Match(entries[index].name)) ++index;
    Describe(entries, index, command);
}

std::vector<const Entry*> Matching(const std::vector<Entry>& entries, const NamePatterns& wanted) {
    std::vector<const Entry*> members;
    for (const Entry& entry : entries) {
        if (wanted.Match(entry.name)) members.push_back(&entry);
    }
    return members;
}

void GiveComment(const std::string& comment, UNZIPCMDSTRUCT& command) {
    Require(command.lpszReturnString, Result::kBadRequest);
    std::memcpy(command.lpszReturnString, comment.c_str(), comment.size() + 1);
    command.returnCount = Count(comment.size());
}

void RefuseWhatIsNotOffered(const UNZIPCMDSTRUCT& command) {
    Require(!command.bLF2CRLFFlag && !(command.wUnzipSubOptions & ~UNZIP_OVERWRITE_READ_ONLY),
            Result::kBadRequest);
}

void Extract(OpenArchive& open, const UNZIPCMDSTRUCT& command) {
    std::vector<const Entry*> members = Matching(open.archive.Entries(), Wanted(command));
    if (command.noDirectoryItemsFlag || command.noDirectoryNamesFlag)
        std::erase_if(members, [](const Entry* entry) { return entry->IsFolder(); });
    Require(!members.empty(), Result::kNothingToDo);
    Extraction(command, open.window, open.archive, members).Run();
}

// The part of the contents that the block can hold, from the starting offset on.
void ExtractToMemory(OpenArchive& open, UNZIPCMDSTRUCT& command) {
    Require(command.lStartingOffset >= 0 && command.lMemBlockSize >= 0, Result::kBadRequest);
    Require(command.lpMemBlock || command.lMemBlockSize == 0, Result::kBadRequest);
    const std::vector<const Entry*> members = Matching(open.archive.Entries(), Wanted(command));
    Require(!members.empty(), Result::kNothingToDo);
    const Entry& entry = *members.front();
    const std::uint64_t first = static_cast<std::uint64_t>(command.lStartingOffset);
    const std::uint64_t end = first + static_cast<std::uint64_t>(command.lMemBlockSize);
    auto* block = static_cast<std::uint8_t*>(command.lpMemBlock);
    CallProgress progress(command, entry.size);
    progress.Begin(AnsiFromUtf8(entry.name), entry.size);
    std::uint64_t done = 0;
    EntryReader(open.window, open.archive).Read(entry, [&](const std::uint8_t* data, std::size_t size) {
        const std::uint64_t from = std::max(done, first), to = std::min(done + size, end);
        if (from < to) std::copy(data + (from - done), data + (to - done), block + (from - first));
        progress.Reach(done += size);
    });
    command.returnCount = Count(static_cast<std::size_t>(std::min(done, end) - std::min(done, first)));
}

void Unpack(UNZIPCMDSTRUCT& command) {
    RefuseWhatIsNotOffered(command);
    OpenArchive open(command.lpszZIPFile);
    if (command.function == UNZIP_EXTRACT) {
        Extract(open, command);
    } else {
        ExtractToMemory(open, command);
    }
}

void Run(UNZIPCMDSTRUCT& command) {
    if (command.function == UNZIP_NONE) return;
    Require(command.unzipStructSize == sizeof command, Result::kBadRequest);
    Require(command.lpszZIPFile && *command.lpszZIPFile, Result::kMissing);
    Require(command.function > UNZIP_NONE && command.function <= UNZIP_FILE_TO_MEMORY, Result::kBadRequest);
    if (command.function == UNZIP_EXTRACT || command.function == UNZIP_FILE_TO_MEMORY) return Unpack(command);
    const std::shared_ptr<const Archive> archive = ListedArchive(command.lpszZIPFile);
    const std::vector<Entry>& entries = archive->Entries();
    switch (command.function) {
        case UNZIP_COUNT_ALL: command.returnCount = Count(entries.size()); return;
        case UNZIP_NEXT: return Describe(entries, IndexAfter(command), command);
        case UNZIP_COUNT_MATCHING:
            command.returnCount = Count(Matching(entries, Wanted(command)).size());
            return;
        case UNZIP_NEXT_MATCHING: return DescribeNextMatching(entries, command);
        case UNZIP_COMMENT_SIZE: command.returnCount = Count(archive->Comment().size()); return;
        case UNZIP_COMMENT: return GiveComment(archive->Comment(), command);
        default: return Describe(entries, static_cast<std::size_t>(command.index), command);
    }
}

}  // namespace

Result RunUnzip(UNZIPCMDSTRUCT& command) {
    return ResultOf([&] { Run(command); });
}

}  // namespace ql::zip
