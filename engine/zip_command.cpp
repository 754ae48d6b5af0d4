#include "engine/zip_command.h"

#include <algorithm>

#include "engine/archive_change.h"
#include "engine/call_progress.h"
#include "engine/disk_items.h"
#include "engine/entry_name.h"
#include "engine/item_filter.h"
#include "engine/item_list.h"
#include "engine/name_encoding.h"
#include "engine/windows_text.h"

namespace ql::zip {
namespace {

constexpr std::uint32_t kArchiveAttribute = FILE_ATTRIBUTE_ARCHIVE;

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
    return !item.IsFolder() && item.time > former->time;
}

// The archive itself can be among the files of its folder.
void LeaveOut(std::vector<DiskItem>& items, const std::wstring& archive) {
    const auto form = [](const std::wstring& path) { return Folded(Utf8FromWide(LiteralPath(path))); };
    const std::u32string own = form(archive), name = own.substr(own.rfind(U'\\') + 1);
    std::erase_if(items, [&](const DiskItem& item) {
        // Full paths only where the name could be the archive's: asking for them takes time.
        if (item.folded.find(name) == std::u32string::npos) return false;
        const std::u32string path = form(item.path);
        return path == own || path == own + U".~new";
    });
}

std::vector<DiskItem> FindItems(const ZIPCMDSTRUCT& command) {
    std::vector<std::wstring> names;
    for (const std::string& name : Items(command)) names.push_back(WideFromUtf8(name));
    const ItemSearch search{command.recurseFlag != 0, command.noDirectoryNamesFlag != 0,
                            command.noDirectoryEntriesFlag == 0, command.includeSysHiddenFlag != 0};
    std::vector<DiskItem> items = FindDiskItems(names, search);
    LeaveOut(items, WideFromAnsi(command.lpszZIPFile));
    const ItemFilter filter(command);
    std::erase_if(items, [&](const DiskItem& item) { return !filter.Admits(item); });
    return items;
}

void DropFormer(ArchiveChange& change, std::int32_t function, std::vector<DiskItem>& items) {
    std::erase_if(items,
                  [&](const DiskItem& item) { return !Wants(function, item, change.Find(item.folded)); });
    for (const DiskItem& item : items) {
        if (const Entry* former = change.Find(item.folded)) change.Drop(*former);
    }
}

void AddItem(ArchiveWriter& writer, const DiskItem& item, int level, CallProgress& progress) {
    progress.Begin(AnsiFromUtf8(item.name), item.size);
    const NewEntry entry{item.name, item.time, item.attributes, level};
    const auto tell = [&](std::uint64_t done) { progress.Reach(done); };
    if (item.IsFolder()) {
        MemoryInput nothing(nullptr, 0);
        return writer.Add(entry, nothing, tell);
    }
    WindowsInput source(item.path, Result::kSourceMissing, Result::kReadFailed);
    writer.Add(entry, source, tell);
}

std::uint64_t TotalSize(const std::vector<DiskItem>& items) {
    std::uint64_t total = 0;
    for (const DiskItem& item : items) total += item.size;
    return total;
}

std::optional<DosTime> LatestTime(const ZIPCMDSTRUCT& command, const ArchiveChange& change,
                                  const std::vector<DiskItem>& items) {
    if (!command.oldAsLatestFlag) return std::nullopt;
    DosTime latest = 0;
    for (const Entry& entry : change.Entries()) latest = std::max(latest, entry.time);
    for (const DiskItem& item : items) latest = std::max(latest, item.time);
    return latest;
}

void DeleteOriginals(const std::vector<DiskItem>& items) {
    bool all = true;
    for (const DiskItem& item : items) all = (item.IsFolder() || ::DeleteFileW(item.path.c_str())) && all;
    Require(all, Result::kNotDeleted);
}

void AddFiles(const ZIPCMDSTRUCT& command) {
    const std::optional<std::string> comment = NewComment(command);
    ArchiveChange change(WideFromAnsi(command.lpszZIPFile), command.function == ZIP_FRESHEN);
    std::vector<DiskItem> items = FindItems(command);
    DropFormer(change, command.function, items);
    Require(!items.empty() || comment, Result::kNothingToDo);
    change.CopyKept();
    const StoredSuffixes stored(command);
    CallProgress progress(command, TotalSize(items));
    for (const DiskItem& item : items) {
        const bool stores = item.IsFolder() || stored.Cover(item.folded);
        AddItem(change.Writer(), item, stores ? 0 : command.compFactor, progress);
    }
    change.Commit(comment, LatestTime(command, change, items));
    if (command.deleteOriginalFlag) DeleteOriginals(items);
}

void DeleteMembers(const ZIPCMDSTRUCT& command) {
    ArchiveChange change(WideFromAnsi(command.lpszZIPFile), true);
    const NamePatterns patterns(Items(command), command.recurseFlag != 0);
    bool any = false;
    for (const Entry& entry : change.Entries()) {
        if (!patterns.Match(entry.name)) continue;
        change.Drop(entry);
        any = true;
    }
    Require(any, Result::kNothingToDo);
    change.CopyKept();
    change.Commit(NewComment(command), LatestTime(command, change, {}));
}

void SetCommentAlone(const ZIPCMDSTRUCT& command) {
    const std::optional<std::string> comment = NewComment(command);
    ArchiveChange change(WideFromAnsi(command.lpszZIPFile), true);
    change.CopyKept();
    change.Commit(comment, std::nullopt);
}

void AddMemory(const ZIPCMDSTRUCT& command) {
    const std::vector<std::string> names = Items(command);
    Require(names.size() == 1 && IsSafeEntryName(names[0]), Result::kBadRequest);
    Require(command.lMemBlockSize >= 0 && (command.lpMemBlock || command.lMemBlockSize == 0),
            Result::kBadRequest);
    ArchiveChange change(WideFromAnsi(command.lpszZIPFile), false);
    const NewEntry entry{WithSlashes(names[0]), DosTimeNow(), kArchiveAttribute, command.compFactor};
    if (const Entry* former = change.Find(Folded(entry.name))) change.Drop(*former);
    change.CopyKept();
    const auto size = static_cast<std::size_t>(command.lMemBlockSize);
    MemoryInput source(static_cast<const std::uint8_t*>(command.lpMemBlock), size);
    CallProgress progress(command, size);
    progress.Begin(AnsiFromUtf8(entry.name), size);
    change.Writer().Add(entry, source, [&](std::uint64_t done) { progress.Reach(done); });
    change.Commit(NewComment(command), std::nullopt);
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

Result RunZip(const ZIPCMDSTRUCT& command) {
    return ResultOf([&] { Run(command); });
}

}  // namespace ql::zip
