#include "engine/extraction.h"

#include <algorithm>
#include <optional>

#include "engine/entry_name.h"
#include "engine/name_encoding.h"
#include "engine/pending_file.h"
#include "engine/windows_text.h"

namespace ql::zip {
namespace {

constexpr DWORD kRestoredAttributes =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
constexpr DWORD kPlainAttributes = FILE_ATTRIBUTE_ARCHIVE;
constexpr DWORD kVolumeLabel = 8;
constexpr DWORD kNoFile = INVALID_FILE_ATTRIBUTES;

// What concerns one member alone.
constexpr Result kOfOneMember[] = {Result::kSkipped,       Result::kBadCrc,       Result::kEncrypted,
                                   Result::kUnknownMethod, Result::kUnsafeName,   Result::kVolumeLabel,
                                   Result::kInvalid,       Result::kCannotCreate, Result::kNotReplaced,
                                   Result::kBusy,          Result::kNameTaken};

bool IsOfOneMember(Result result) {
    return std::find(std::begin(kOfOneMember), std::end(kOfOneMember), result) != std::end(kOfOneMember);
}

std::uint64_t TotalSize(const std::vector<const Entry*>& members) {
    std::uint64_t total = 0;
    for (const Entry* entry : members) total += entry->size;
    return total;
}

std::wstring DestinationOf(const UNZIPCMDSTRUCT& command) {
    const std::wstring folder = WideFromAnsi(command.lpszDestination);
    std::wstring path = LiteralPath(folder.empty() ? L"." : folder);
    if (path.back() != L'\\') path += L'\\';
    return path;
}

}  // namespace

Extraction::Extraction(const UNZIPCMDSTRUCT& command, const ExtractionSource& source,
                       const std::vector<const Entry*>& members, SameName sameName, const MemberEnd& each)
    : command_(command),
      members_(members),
      refusesSameName_(sameName == SameName::kRefused && command.noDirectoryNamesFlag),
      each_(each),
      patience_(source.patience),
      destination_(DestinationOf(command)),
      reader_(source.file, source.archive),
      progress_(command, TotalSize(members)) {}

void Extraction::Run() {
    for (const Entry* entry : members_) {
        bool isLeftOut = false;
        const Result result = ResultOf([&] { isLeftOut = !One(*entry); });
        each_(*entry, isLeftOut ? Result::kSkipped : result);
        Require(result == Result::kOk || IsOfOneMember(result), result);
        Note(result);
    }
    Require(worst_ == Result::kOk, worst_);
}

void Extraction::Note(Result result) {
    if (worst_ == Result::kOk || (worst_ == Result::kSkipped && result != Result::kOk)) worst_ = result;
}

bool Extraction::One(const Entry& entry) {
    progress_.Begin(AnsiFromUtf8(entry.name), entry.size);
    if (command_.testFlag) return Test(entry), true;
    Require(!(entry.attributes & kVolumeLabel), Result::kVolumeLabel);
    const std::string name = UsedName(entry);
    Require(IsSafeEntryName(name), Result::kUnsafeName);
    const std::wstring target = TargetOf(name);
    if (entry.isFolder) return NeedFolder(target), true;
    const std::u32string file = refusesSameName_ ? Folded(name) : std::u32string();
    if (refusesSameName_) RequireOwn(file, entry);
    const auto former = FileFacts(target, Result::kCannotCreate);
    const bool isWanted = former ? MayReplace(entry, *former) : !command_.freshenFlag;
    if (!isWanted) return false;
    Write(entry, target, former ? former->dwFileAttributes : kNoFile);
    if (refusesSameName_) written_[file] = Folded(entry.name);
    return true;
}

void Extraction::Test(const Entry& entry) {
    std::uint64_t done = 0;
    reader_.Read(entry, [&](const std::uint8_t*, std::size_t size) { progress_.Reach(done += size); });
}

// What is not used of a name does no harm.
std::string Extraction::UsedName(const Entry& entry) const {
    return command_.noDirectoryNamesFlag ? std::string(LastPart(entry.name)) : entry.name;
}

std::wstring Extraction::TargetOf(const std::string& name) const {
    std::wstring path = WideFromUtf8(name);
    std::replace(path.begin(), path.end(), L'/', L'\\');
    if (path.back() == L'\\') path.pop_back();
    return destination_ + path;
}

// Of one member that is there twice, the last counts as everywhere.
void Extraction::RequireOwn(const std::u32string& file, const Entry& entry) const {
    const auto former = written_.find(file);
    Require(former == written_.end() || former->second == Folded(entry.name), Result::kNameTaken);
}

// Whether the flags want it. Throws where the file may not be replaced. With the flag to overwrite, an update
// leaves only what is newer than the member.
bool Extraction::MayReplace(const Entry& entry, const WIN32_FILE_ATTRIBUTE_DATA& former) const {
    const DosTime member = TimeOf(entry), file = DosTimeOf(former.ftLastWriteTime);
    const bool isUpdate = command_.freshenFlag || command_.updateFlag;
    if (isUpdate && (member < file || (member == file && !command_.overWriteFlag))) return false;
    Require(isUpdate || command_.overWriteFlag, Result::kSkipped);
    Require(!(former.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY), Result::kCannotCreate);
    Require(!(former.dwFileAttributes & FILE_ATTRIBUTE_READONLY) ||
                command_.wUnzipSubOptions & UNZIP_OVERWRITE_READ_ONLY,
            Result::kCannotCreate);
    return true;
}

void Extraction::NeedFolder(const std::wstring& folder) {
    if (folder == lastFolder_) return;
    Require(MakeFolders(folder), Result::kCannotCreate);
    lastFolder_ = folder;
}

void Extraction::Write(const Entry& entry, const std::wstring& target, DWORD formerAttributes) {
    NeedFolder(target.substr(0, target.rfind(L'\\')));
    PendingFile file(target, patience_);
    std::uint64_t done = 0;
    reader_.Read(entry, [&](const std::uint8_t* data, std::size_t size) {
        file.WriteAt(done, data, size);
        progress_.Reach(done += size);
    });
    if (done == 0) progress_.Reach(0);
    if (const auto time = ExactTimeOf(entry)) file.SetTime(*time);
    const bool isThere = formerAttributes != kNoFile;
    if (isThere && formerAttributes & FILE_ATTRIBUTE_READONLY)
        ::SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL);
    file.Commit(isThere ? Former::kReplaced : Former::kKept);
    const DWORD attributes = entry.attributes & kRestoredAttributes;
    if (attributes & ~kPlainAttributes) ::SetFileAttributesW(target.c_str(), attributes);
}

}  // namespace ql::zip
