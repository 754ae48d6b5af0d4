#include "engine/unzip_command.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "engine/entry_name.h"
#include "engine/extraction.h"
#include "engine/item_list.h"
#include "engine/kept_directories.h"
#include "engine/member_selection.h"
#include "engine/windows_files.h"
#include "engine/windows_text.h"

namespace ql::zip {
namespace {

constexpr std::uint32_t kFileAttributes = 0x3f;
constexpr std::size_t kLastIndex = 0xffff;

struct OpenArchive {
    explicit OpenArchive(const char* ansiPath)
        : path(LiteralPath(WideFromAnsi(ansiPath))),
          file(path, kOpenArchive, patience),
          // NOLINTNEXTLINE(clang-analyzer-optin.cplusplus.UninitializedObject): the file has its handle
          archive(DirectoryOf(file, path)) {}
    const std::vector<Entry>& Entries() const { return archive->Entries(); }

    Patience patience;
    const std::wstring path;
    WindowsInput file;
    std::shared_ptr<const Archive> archive;
};

std::int32_t Count(std::size_t count) {
    return static_cast<std::int32_t>(count);
}

std::uint32_t Narrow(std::uint64_t size) {
    Require(size <= 0xffffffff, Result::kTooBig);
    return static_cast<std::uint32_t>(size);
}

// Folders are known by their slash.
std::string NameWithSlash(const Entry& entry) {
    const bool lacksSlash = entry.isFolder && !IsSeparator(entry.name.back());
    return lacksSlash ? entry.name + "/" : entry.name;
}

std::uint32_t AttributesOf(const Entry& entry) {
    return (entry.attributes & kFileAttributes) | (entry.isFolder ? FILE_ATTRIBUTE_DIRECTORY : 0) |
           (entry.IsEncrypted() ? ZIPINFO_ENCRYPTED : 0) |
           (IsLongName(LastPart(entry.name)) ? ZIPINFO_LONG_NAME : 0);
}

// Into zeros.
template <std::size_t size>
void CopyText(char (&into)[size], const std::string& text) {
    Require(text.size() < size, Result::kTooBig);
    text.copy(into, size);
}

void Describe(const OpenArchive& open, std::size_t index, UNZIPCMDSTRUCT& command) {
    Require(command.zInfo, Result::kBadRequest);
    if (index >= open.Entries().size()) WalkEnded(open.archive);
    Require(index < open.Entries().size() && index <= kLastIndex, Result::kOutOfBounds);
    const Entry& entry = open.Entries()[index];
    // The walk goes on even past a member that the record cannot express.
    command.index = static_cast<std::int32_t>(index);
    ZIPINFO info{};
    info.index = static_cast<std::uint16_t>(index);
    info.oSize = Narrow(entry.size);
    info.cSize = Narrow(entry.packedSize);
    info.cMethod = entry.method;
    info.cOption = entry.flags >> 1 & 3;
    info.crc_32 = entry.crc;
    CopyText(info.szDateTime, DosTimeText(TimeOf(entry)));
    CopyText(info.szFileName, AnsiFromUtf8(NameWithSlash(entry)));
    info.attr = AttributesOf(entry);
    *command.zInfo = info;
}

std::size_t IndexAfter(const UNZIPCMDSTRUCT& command) {
    return static_cast<std::size_t>(std::int64_t{command.index} + 1);
}

// The members that the item list stands for; folders are none where the record says so.
std::vector<std::size_t> Wanted(const OpenArchive& open, const UNZIPCMDSTRUCT& command) {
    std::vector<std::size_t> wanted = SelectMembers(
        *open.archive, SplitItems(Utf8FromAnsi(command.lpszFilespec)), command.recurseFlag != 0);
    if (command.noDirectoryItemsFlag)
        std::erase_if(wanted, [&](std::size_t i) { return open.Entries()[i].isFolder; });
    return wanted;
}

void DescribeNextMatching(const OpenArchive& open, UNZIPCMDSTRUCT& command) {
    const std::vector<std::size_t> wanted = Wanted(open, command);
    const auto next = std::lower_bound(wanted.begin(), wanted.end(), IndexAfter(command));
    Describe(open, next == wanted.end() ? open.Entries().size() : *next, command);
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

std::vector<const Entry*> At(const OpenArchive& open, const std::vector<std::size_t>& places) {
    std::vector<const Entry*> members;
    members.reserve(places.size());
    for (const std::size_t i : places) members.push_back(&open.Entries()[i]);
    return members;
}

void Extract(OpenArchive& open, const UNZIPCMDSTRUCT& command, std::vector<const Entry*> members,
             SameName sameName, const MemberEnd& each) {
    if (command.noDirectoryNamesFlag)
        std::erase_if(members, [](const Entry* entry) { return entry->isFolder; });
    Require(!members.empty(), Result::kNothingToDo);
    WindowedInput window(open.file);
    Extraction(command, {window, *open.archive, open.patience}, members, sameName, each).Run();
}

// The part of the contents that the block can hold, from the starting offset on.
void ExtractToMemory(OpenArchive& open, UNZIPCMDSTRUCT& command) {
    Require(command.lStartingOffset >= 0 && command.lMemBlockSize >= 0, Result::kBadRequest);
    Require(command.lpMemBlock || command.lMemBlockSize == 0, Result::kBadRequest);
    const std::vector<std::size_t> wanted = Wanted(open, command);
    Require(!wanted.empty(), Result::kNothingToDo);
    const Entry& entry = open.Entries()[wanted.front()];
    const std::uint64_t first = static_cast<std::uint64_t>(command.lStartingOffset);
    const std::uint64_t end = first + static_cast<std::uint64_t>(command.lMemBlockSize);
    auto* block = static_cast<std::uint8_t*>(command.lpMemBlock);
    CallProgress progress(command, entry.size);
    progress.Begin(AnsiFromUtf8(entry.name), entry.size);
    std::uint64_t done = 0;
    EntryReader(open.file, *open.archive).Read(entry, [&](const std::uint8_t* data, std::size_t size) {
        const std::uint64_t from = std::max(done, first), to = std::min(done + size, end);
        if (from < to) std::copy(data + (from - done), data + (to - done), block + (from - first));
        progress.Reach(done += size);
    });
    command.returnCount = Count(static_cast<std::size_t>(std::min(done, end) - std::min(done, first)));
}

void RequireCommand(const UNZIPCMDSTRUCT& command) {
    Require(command.unzipStructSize == sizeof command, Result::kBadRequest);
    Require(command.lpszZIPFile && *command.lpszZIPFile, Result::kMissing);
    Require(command.function > UNZIP_NONE && command.function <= UNZIP_FILE_TO_MEMORY, Result::kBadRequest);
    if (command.function == UNZIP_EXTRACT || command.function == UNZIP_FILE_TO_MEMORY)
        RefuseWhatIsNotOffered(command);
}

void Run(UNZIPCMDSTRUCT& command) {
    if (command.function == UNZIP_NONE) return;
    RequireCommand(command);
    OpenArchive open(command.lpszZIPFile);
    switch (command.function) {
        case UNZIP_COUNT_ALL: command.returnCount = Count(open.Entries().size()); return;
        case UNZIP_NEXT: return Describe(open, IndexAfter(command), command);
        case UNZIP_COUNT_MATCHING: command.returnCount = Count(Wanted(open, command).size()); return;
        case UNZIP_NEXT_MATCHING: return DescribeNextMatching(open, command);
        case UNZIP_COMMENT_SIZE: command.returnCount = Count(open.archive->Comment().size()); return;
        case UNZIP_COMMENT: return GiveComment(open.archive->Comment(), command);
        case UNZIP_INDEXED: return Describe(open, static_cast<std::size_t>(command.index), command);
        case UNZIP_EXTRACT:
            return Extract(open, command, At(open, Wanted(open, command)), SameName::kReplaces,
                           [](const Entry&, Result) {});
        default: return ExtractToMemory(open, command);
    }
}

// Tells of members in full.
class MemberTeller {
  public:
    MemberTeller(const OpenArchive& open, ZipMemberProc proc, void* userData)
        : first_(open.Entries().data()), proc_(proc), userData_(userData) {}

    void operator()(const Entry& entry, Result result) const {
        const std::string name = NameWithSlash(entry);
        const std::wstring wide = WideFromUtf8(name);
        const std::string ansi = AnsiFromUtf8(name), dateTime = DosTimeText(TimeOf(entry));
        const ZIPMEMBER member{static_cast<std::int32_t>(&entry - first_),
                               UnzipCodeOf(result),
                               wide.c_str(),
                               ansi.c_str(),
                               dateTime.c_str(),
                               entry.size,
                               entry.packedSize,
                               entry.crc,
                               AttributesOf(entry),
                               entry.method,
                               entry.flags,
                               entry.isFolder,
                               entry.IsEncrypted()};
        Require(proc_(&member, userData_) == 0, Result::kCancelled);
    }

  private:
    const Entry* first_;
    ZipMemberProc proc_;
    void* userData_;
};

std::vector<const Entry*> Concerned(const OpenArchive& open, const UNZIPCMDSTRUCT& command) {
    if (command.index >= 0) {
        Require(static_cast<std::size_t>(command.index) < open.Entries().size(), Result::kOutOfBounds);
        return {&open.Entries()[static_cast<std::size_t>(command.index)]};
    }
    if (command.function != UNZIP_COUNT_ALL) return At(open, Wanted(open, command));
    std::vector<const Entry*> all;
    for (const Entry& entry : open.Entries()) all.push_back(&entry);
    return all;
}

void RunEach(UNZIPCMDSTRUCT& command, ZipMemberProc each, void* userData) {
    RequireCommand(command);
    const bool tellsOnly = command.function == UNZIP_COUNT_ALL || command.function == UNZIP_COUNT_MATCHING;
    Require(each && (tellsOnly || command.function == UNZIP_EXTRACT), Result::kBadRequest);
    OpenArchive open(command.lpszZIPFile);
    const std::vector<const Entry*> members = Concerned(open, command);
    const MemberTeller tell(open, each, userData);
    command.returnCount = Count(members.size());
    if (!tellsOnly) return Extract(open, command, members, SameName::kRefused, tell);
    for (const Entry* entry : members) tell(*entry, Result::kOk);
    WalkEnded(open.archive);
}

}  // namespace

Result RunUnzip(UNZIPCMDSTRUCT& command) {
    return ResultOf([&] { Run(command); });
}

Result RunUnzipEach(UNZIPCMDSTRUCT& command, ZipMemberProc each, void* userData) {
    return ResultOf([&] { RunEach(command, each, userData); });
}

}  // namespace ql::zip
