#include "engine/zip_command.h"

#include <algorithm>
#include <set>
#include <span>
#include <utility>

#include "engine/archive_change.h"
#include "engine/call_progress.h"
#include "engine/disk_items.h"
#include "engine/entry_name.h"
#include "engine/item_filter.h"
#include "engine/item_list.h"
#include "engine/member_selection.h"
#include "engine/name_encoding.h"
#include "engine/source_reader.h"
#include "engine/windows_text.h"

namespace ql::zip {
namespace {

constexpr std::uint32_t kArchiveAttribute = FILE_ATTRIBUTE_ARCHIVE;

// No ZipCode: the source is still to be added.
constexpr std::int32_t kUndecided = -1;

std::vector<std::string> Items(const ZIPCMDSTRUCT& command) {
    return SplitItems(Utf8FromAnsi(command.lpszItemList));
}

bool IsCommentAlone(const ZIPCMDSTRUCT& command) {
    return command.addCommentFlag && command.function == ZIP_ADD && Items(command).empty();
}

std::optional<std::string> NewComment(const ZIPCMDSTRUCT& command) {
    if (!command.addCommentFlag) return std::nullopt;
    Require(command.lpszComment, Result::kBadComment);
    return command.lpszComment;
}

// Better no archive than another one than was asked for.
void RefuseWhatIsNotOffered(const ZIPCMDSTRUCT& command) {
    Require(command.zipStructSize == sizeof command, Result::kBadRequest);
    Require(command.wMultiVolControl == 0, Result::kVolumesAsked);
    Require(!command.encryptFlag && !command.dosifyFlag && !command.convertLFtoCRLFFlag && !command.fixFlag &&
                !command.fixHarderFlag && !command.includeVolumeFlag && command.wZipSubOptions == 0,
            Result::kBadRequest);
    Require(command.compFactor >= 0 && command.compFactor <= 9, Result::kBadRequest);
    Require(command.lpszZIPFile && *command.lpszZIPFile, Result::kMissing);
}

bool Wants(std::int32_t function, const DiskItem& item, const Entry* former) {
    if (function == ZIP_ADD) return !former || !item.IsFolder();
    if (!former) return function == ZIP_UPDATE;
    return !item.IsFolder() && item.time > TimeOf(*former);
}

// The archive itself can be among the files of its folder.
void LeaveOut(std::vector<DiskItem>& items, const std::wstring& archive) {
    const auto form = [](const std::wstring& path) { return Folded(Utf8FromWide(LiteralPath(path))); };
    const auto nameOf = [](const std::u32string& path) { return path.substr(path.rfind(U'\\') + 1); };
    const std::u32string own = form(archive), ownName = nameOf(own),
                         beside = form(PendingFile::NameBeside(archive)), besideName = nameOf(beside);
    std::erase_if(items, [&](const DiskItem& item) {
        // Full paths only where the name could be the archive's: asking for them takes time.
        if (!item.folded.ends_with(ownName) && !item.folded.ends_with(besideName)) return false;
        const std::u32string path = form(item.path);
        return path == own || path == beside;
    });
}

std::vector<DiskItem> FindItems(const ZIPCMDSTRUCT& command, const std::wstring& archive) {
    std::vector<std::wstring> names;
    for (const std::string& name : Items(command)) names.push_back(WideFromUtf8(name));
    const ItemSearch search{command.recurseFlag != 0, command.noDirectoryNamesFlag != 0,
                            command.noDirectoryEntriesFlag == 0, command.includeSysHiddenFlag != 0};
    std::vector<DiskItem> items = FindDiskItems(names, search);
    LeaveOut(items, archive);
    const ItemFilter filter(command);
    std::erase_if(items, [&](const DiskItem& item) { return !filter.Admits(item); });
    return items;
}

void DropFormer(ArchiveChange& change, std::int32_t function, std::vector<DiskItem>& items) {
    std::erase_if(items,
                  [&](const DiskItem& item) { return !Wants(function, item, change.Find(item.name)); });
    for (const DiskItem& item : items) change.Drop(item.name);
}

// The next item of the reader.
void AddItem(ArchiveChange& change, const DiskItem& item, SourceReader& reader, int level,
             CallProgress& progress) {
    progress.Begin(AnsiFromUtf8(item.name), item.size);
    change.Writer().Add({item.name, item.time, item.attributes, level}, reader.Next(),
                        [&](std::uint64_t done) { progress.Reach(done); });
}

std::optional<DosTime> LatestTime(const ZIPCMDSTRUCT& command, const ArchiveChange& change,
                                  const std::vector<DiskItem>& items) {
    if (!command.oldAsLatestFlag) return std::nullopt;
    DosTime latest = 0;
    for (std::size_t i = 0; i < change.Entries().size(); ++i) {
        if (change.Keeps(i)) latest = std::max(latest, TimeOf(change.Entries()[i]));
    }
    for (const DiskItem& item : items) latest = std::max(latest, item.time);
    return latest;
}

void DeleteOriginals(const std::vector<DiskItem>& items) {
    const auto stays = [](const DiskItem& item) {
        return !item.IsFolder() && !::DeleteFileW(item.path.c_str());
    };
    Require(std::ranges::count_if(items, stays) == 0, Result::kNotDeleted);
}

void AddItems(const ZIPCMDSTRUCT& command, ArchiveChange& change, const std::vector<DiskItem>& items) {
    const StoredSuffixes stored(command);
    std::vector<const DiskItem*> all;
    all.reserve(items.size());
    for (const DiskItem& item : items) all.push_back(&item);
    CallProgress progress(command, TotalSize(all));
    SourceReader reader(std::move(all), change.Waiting());
    for (const DiskItem& item : items) {
        const bool stores = item.IsFolder() || stored.Cover(item.folded);
        AddItem(change, item, reader, stores ? 0 : command.compFactor, progress);
    }
}

void AddFiles(const ZIPCMDSTRUCT& command) {
    const std::optional<std::string> comment = NewComment(command);
    Patience patience;
    ArchiveChange change(WideFromAnsi(command.lpszZIPFile), command.function == ZIP_FRESHEN, patience);
    std::vector<DiskItem> items = FindItems(command, change.Place());
    DropFormer(change, command.function, items);
    Require(!items.empty() || comment, Result::kNothingToDo);
    change.CopyKept();
    AddItems(command, change, items);
    change.Commit(comment, LatestTime(command, change, items));
    if (command.deleteOriginalFlag) DeleteOriginals(items);
}

void DeleteMembers(const ZIPCMDSTRUCT& command) {
    Patience patience;
    ArchiveChange change(WideFromAnsi(command.lpszZIPFile), true, patience);
    const std::vector<std::size_t> members =
        SelectMembers(change.Former(), Items(command), command.recurseFlag != 0);
    Require(!members.empty(), Result::kNothingToDo);
    for (const std::size_t i : members) change.Drop(i);
    change.CopyKept();
    change.Commit(NewComment(command), LatestTime(command, change, {}));
}

void SetCommentAlone(const ZIPCMDSTRUCT& command) {
    const std::optional<std::string> comment = NewComment(command);
    Patience patience;
    ArchiveChange change(WideFromAnsi(command.lpszZIPFile), true, patience);
    change.CopyKept();
    change.Commit(comment, std::nullopt);
}

void AddMemory(const ZIPCMDSTRUCT& command) {
    const std::vector<std::string> names = Items(command);
    Require(names.size() == 1 && IsSafeEntryName(names[0]), Result::kBadRequest);
    Require(command.lMemBlockSize >= 0 && (command.lpMemBlock || command.lMemBlockSize == 0),
            Result::kBadRequest);
    Patience patience;
    ArchiveChange change(WideFromAnsi(command.lpszZIPFile), false, patience);
    const NewEntry entry{WithSlashes(names[0]), DosTimeNow(), kArchiveAttribute, command.compFactor};
    change.Drop(entry.name);
    change.CopyKept();
    const auto size = static_cast<std::size_t>(command.lMemBlockSize);
    MemoryInput source(static_cast<const std::uint8_t*>(command.lpMemBlock), size);
    CallProgress progress(command, size);
    progress.Begin(AnsiFromUtf8(entry.name), size);
    change.Writer().Add(entry, source, [&](std::uint64_t done) { progress.Reach(done); });
    change.Commit(NewComment(command), std::nullopt);
}

// --- Sources with a result each

struct Source {
    ZIPSOURCE* told;
    DiskItem item;
};

bool IsOpen(const ZIPSOURCE& source) {
    return source.code == kUndecided;
}

DiskItem ItemOf(const ZIPSOURCE& source) {
    Require(source.file && *source.file, Result::kSourceMissing);
    const std::wstring path = LiteralPath(source.file);
    const auto facts = FileFacts(path, Result::kReadFailed);
    Require(facts.has_value(), Result::kSourceMissing);
    const std::string name = WithSlashes(Utf8FromWide(source.name ? source.name : path));
    return DiskItemOf(path, source.name ? name : std::string(LastPart(name)), *facts);
}

// What is settled before the archive is touched leaves the list with its code.
std::vector<Source> WantedSources(ArchiveChange& change, std::int32_t function, ZIPSOURCE* sources,
                                  std::int32_t count) {
    std::vector<Source> wanted;
    std::set<std::u32string> names;
    const std::u32string archive = Folded(Utf8FromWide(change.Place()));
    for (ZIPSOURCE* source = sources; source != sources + count; ++source) {
        if (!IsOpen(*source)) continue;
        const Result result = ResultOf([&] {
            DiskItem item = ItemOf(*source);
            Require(IsSafeEntryName(item.name), Result::kBadRequest);
            Require(Folded(Utf8FromWide(item.path)) != archive, Result::kBadRequest);
            Require(names.insert(item.folded).second, Result::kBadRequest);
            const Entry* const former = change.Find(item.name);
            Require(Wants(function, item, former), Result::kNothingToDo);
            // Better now than when its former member has been left out of the copy.
            if (former && !item.IsFolder()) WindowsInput(item.path, kOpenSource, change.Waiting());
            wanted.push_back({source, std::move(item)});
        });
        if (result != Result::kOk) source->code = ZipCodeOf(result);
    }
    return wanted;
}

// Adds one source, or notes why not. Answers whether the change can go on: a former member of that name is
// not in it any more.
bool AddSource(ArchiveChange& change, const Source& source, SourceReader& reader, int level,
               CallProgress& progress) {
    const Result result =
        ResultOf([&] { AddItem(change, source.item, reader, source.item.IsFolder() ? 0 : level, progress); });
    if (result == Result::kOk) return true;
    Require(result == Result::kReadFailed || result == Result::kSourceMissing, result);
    source.told->code = ZipCodeOf(result);
    return !change.Find(source.item.name);
}

// Answers whether all is done, rather than to be begun again without the source that failed.
bool TrySources(const ZIPCMDSTRUCT& command, ZIPSOURCE* sources, std::int32_t count, Patience& patience) {
    ArchiveChange change(WideFromAnsi(command.lpszZIPFile), command.function == ZIP_FRESHEN, patience);
    const std::vector<Source> wanted = WantedSources(change, command.function, sources, count);
    Require(!wanted.empty(), Result::kNothingToDo);
    std::vector<const DiskItem*> items;
    for (const Source& source : wanted) {
        change.Drop(source.item.name);
        items.push_back(&source.item);
    }
    change.CopyKept();
    CallProgress progress(command, TotalSize(items));
    SourceReader reader(std::move(items), patience);
    for (const Source& source : wanted) {
        if (!AddSource(change, source, reader, command.compFactor, progress)) return false;
    }
    Require(
        std::any_of(wanted.begin(), wanted.end(), [](const Source& source) { return IsOpen(*source.told); }),
        Result::kNothingToDo);
    change.Commit(std::nullopt, std::nullopt);
    return true;
}

void AddSources(const ZIPCMDSTRUCT& command, ZIPSOURCE* sources, std::int32_t count) {
    RefuseWhatIsNotOffered(command);
    Require(command.function == ZIP_FRESHEN || command.function == ZIP_UPDATE || command.function == ZIP_ADD,
            Result::kBadRequest);
    Require(count >= 0 && (sources || count == 0), Result::kBadRequest);
    Patience patience;
    while (!TrySources(command, sources, count, patience)) {
    }
}

void Run(const ZIPCMDSTRUCT& command) {
    if (command.function == ZIP_NONE) return;
    RefuseWhatIsNotOffered(command);
    if (IsCommentAlone(command)) return SetCommentAlone(command);
    switch (command.function) {
        case ZIP_FRESHEN:
        case ZIP_UPDATE:
        case ZIP_ADD: return AddFiles(command);
        case ZIP_DELETE: return DeleteMembers(command);
        case ZIP_MEMORY_TO_FILE: return AddMemory(command);
        default: throw Failure{Result::kBadRequest};
    }
}

}  // namespace

Result RunZipFiles(const ZIPCMDSTRUCT& command, ZIPSOURCE* sources, std::int32_t count) {
    const std::span<ZIPSOURCE> all(sources, sources ? static_cast<std::size_t>(std::max(count, 0)) : 0);
    for (ZIPSOURCE& source : all) source.code = kUndecided;
    const Result result = ResultOf([&] { AddSources(command, sources, count); });
    for (ZIPSOURCE& source : all) {
        if (IsOpen(source)) source.code = ZipCodeOf(result);
    }
    return result;
}

Result RunZip(const ZIPCMDSTRUCT& command) {
    return ResultOf([&] { Run(command); });
}

}  // namespace ql::zip
