#include "engine/extraction.h"

#include <algorithm>
#include <utility>

#include "engine/entry_name.h"
#include "engine/name_encoding.h"
#include "engine/windows_text.h"

namespace ql::zip {
namespace {

constexpr DWORD kVolumeLabel = 8;

// From here on a folder of their own is worth its making.
constexpr int kManyFiles = 100;

// What concerns one member alone.
constexpr Result kOfOneMember[] = {Result::kSkipped,       Result::kBadCrc,       Result::kEncrypted,
                                   Result::kUnknownMethod, Result::kUnsafeName,   Result::kVolumeLabel,
                                   Result::kInvalid,       Result::kCannotCreate, Result::kNotReplaced,
                                   Result::kBusy,          Result::kNameTaken};

bool IsOfOneMember(Result result) {
    return std::find(std::begin(kOfOneMember), std::end(kOfOneMember), result) != std::end(kOfOneMember);
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
      placement_(command, source.patience),
      destination_(DestinationOf(command)),
      reader_(source.file, source.archive),
      progress_(command, TotalSize(members)) {}

void Extraction::Run() {
    for (const Entry* entry : members_) {
        State state = State::kDone;
        const Result result = ResultOf([&] { state = Begin(*entry); });
        if (state == State::kUnderWay) continue;
        EndAll();
        End(*entry, result, state == State::kLeftOut);
    }
    EndAll();
    Require(worst_ == Result::kOk, worst_);
}

// Throws what ends the call, now and whenever another member is to be ended.
void Extraction::End(const Entry& entry, Result result, bool isLeftOut) {
    ended_ = ResultOf([&] {
        each_(entry, isLeftOut ? Result::kSkipped : result);
        Require(result == Result::kOk || IsOfOneMember(result), result);
    });
    Require(ended_ == Result::kOk, ended_);
    if (worst_ == Result::kOk || (worst_ == Result::kSkipped && result != Result::kOk)) worst_ = result;
}

void Extraction::EndAll() {
    Require(ended_ == Result::kOk, ended_);
    while (!files_.IsEmpty()) EndOldest();
}

void Extraction::EndOldest() {
    std::unique_ptr<Unpacked> member = files_.Next();
    NoteFile(*member->entry, member->former, member->result == Result::kOk && !member->isLeftOut);
    End(*member->entry, member->result, member->isLeftOut);
    files_.GiveBack(std::move(member));
}

void Extraction::NoteFile(const Entry& entry, const Placement::FormerFile& former, bool isWritten) {
    looksFirst_ = former.has_value();
    if (refusesSameName_ && isWritten) written_[Folded(UsedName(entry))] = Folded(entry.name);
}

Extraction::State Extraction::Begin(const Entry& entry) {
    progress_.Begin(AnsiFromUtf8(entry.name), entry.size);
    if (command_.testFlag) {
        Read(entry, [](const std::uint8_t*, std::size_t) {});
        return State::kDone;
    }
    Require(!(entry.attributes & kVolumeLabel), Result::kVolumeLabel);
    const std::string name = UsedName(entry);
    Require(IsSafeEntryName(name), Result::kUnsafeName);
    if (!entry.isFolder) return BeginFile(entry, name);
    NeedFolder(TargetOf(name));
    return State::kDone;
}

Extraction::State Extraction::BeginFile(const Entry& entry, const std::string& name) {
    // The second of two members with one place finds the first one there, as anybody's file.
    if (IsUnderWay(name)) EndAll();
    if (refusesSameName_) RequireOwn(Folded(name), entry);
    if (WorkFolder::IsNamed(LastPart(name))) LeaveWorkFolder();
    const std::wstring place = TargetOf(name);
    Placement::FormerFile former;
    if (looksFirst_ || command_.freshenFlag) {
        former = FileFacts(place, Result::kCannotCreate);
        looksFirst_ = former.has_value();
        if (!placement_.Wants(entry, former)) return State::kLeftOut;
    }
    NeedFolder(place.substr(0, place.rfind(L'\\')));
    if (entry.size > kMostSmall) return WriteLarge(entry, place, former);
    WriteSmall(entry, place, former);
    return State::kUnderWay;
}

bool Extraction::IsUnderWay(const std::string& name) const {
    return files_.Any([&](const Unpacked& member) { return IsSameFolded(UsedName(*member.entry), name); });
}

void Extraction::Read(const Entry& entry, const Sink& sink) {
    std::uint64_t done = 0;
    reader_.Read(entry, [&](const std::uint8_t* data, std::size_t size) {
        sink(data, size);
        progress_.Reach(done += size);
    });
    if (done == 0) progress_.Reach(0);
}

Extraction::State Extraction::WriteLarge(const Entry& entry, const std::wstring& place,
                                         Placement::FormerFile former) {
    const bool isWritten = placement_.Write(entry, place, former, [&](PendingFile& file) {
        std::uint64_t done = 0;
        Read(entry, [&](const std::uint8_t* data, std::size_t size) {
            file.WriteAt(done, data, size);
            done += size;
        });
    });
    NoteFile(entry, former, isWritten);
    return isWritten ? State::kDone : State::kLeftOut;
}

void Extraction::WriteSmall(const Entry& entry, const std::wstring& place,
                            const Placement::FormerFile& former) {
    if (files_.IsFull()) EndOldest();
    std::unique_ptr<Unpacked> member = files_.Take();
    member->contents.clear();
    Read(entry, [&](const std::uint8_t* data, std::size_t size) {
        member->contents.insert(member->contents.end(), data, data + size);
    });
    member->placement = &placement_;
    member->entry = &entry;
    member->place = place;
    member->former = former;
    files_.Push(std::move(member));
}

void Extraction::Unpacked::Do(Tool&) noexcept {
    isLeftOut = false;
    result = ResultOf([this] {
        isLeftOut = !placement->Write(*entry, place, former, [this](PendingFile& file) {
            file.WriteAt(0, contents.data(), contents.size());
        });
    });
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

// A member before may be a file where a folder is wanted now.
void Extraction::NeedFolder(const std::wstring& folder) {
    if (folder == lastFolder_) {
        if (++filesInFolder_ == kManyFiles) MakeWorkFolder();
        return;
    }
    LeaveWorkFolder();
    Require(MakeFolders(folder), Result::kCannotCreate);
    lastFolder_ = folder;
    filesInFolder_ = 0;
}

void Extraction::MakeWorkFolder() {
    EndAll();
    placement_.WriteIn(workFolder_.emplace(lastFolder_).path());
}

void Extraction::LeaveWorkFolder() {
    EndAll();
    placement_.WriteIn({});
    workFolder_.reset();
}

}  // namespace ql::zip
