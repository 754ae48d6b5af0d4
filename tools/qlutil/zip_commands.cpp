#include <sys/stat.h>
#include <wchar.h>

#include <algorithm>
#include <cstdint>
#include <deque>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/win32.h"
#include "text/ansi_text.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/progress.h"
#include "tools/qlutil/system_reason.h"
#include "tools/qlutil/zip_sources.h"
#include "zip/dynazip.h"
#include "zip/zip_records.h"

namespace {

constexpr int kYes = 1;

// Both engines, loaded as long as this lives.
class Engines {
  public:
    Engines() : zip_(Dynazip::IsZipDllLoaded() != 0), unzip_(Dynazip::IsUnZipDllLoaded() != 0) {}
    ~Engines() {
        Dynazip::FreeZipDll();
        Dynazip::FreeUnZipDll();
    }
    Engines(const Engines&) = delete;
    Engines& operator=(const Engines&) = delete;

    // The file of one that is not there; null when both are.
    const wchar_t* Missing() const { return !zip_ ? L"DZIP32.DLL" : !unzip_ ? L"DUNZIP32.DLL" : nullptr; }

  private:
    bool zip_, unzip_;
};

template <Answer (*work)(const Arguments&, Progress&)>
Answer WithEngines(const Arguments& arguments) {
    const Engines engines;
    if (const wchar_t* missing = engines.Missing()) {
        return Answer::Failure(L"cannot load " + std::wstring(missing) +
                               L", neither from the program directory nor from beside the library");
    }
    Progress progress(L"reading " + std::wstring(arguments[0]));
    return work(arguments, progress);
}

// What is shown of a name that others chose.
std::wstring Shown(std::wstring name) {
    for (wchar_t& c : name) {
        if (c < 0x20 || (c >= 0x7f && c < 0xa0)) c = L'?';
    }
    return name;
}

std::wstring Reason(long code, const wchar_t* message) {
    if (code == ZIP_BAD_REQUEST)
        return L"a name has a double quote or characters that the ANSI code page lacks";
    return *message ? message : L"code " + std::to_wstring(code);
}

std::wstring UnzipReason(long code) {
    if (code == UNZIP_SKIPPED) return L"the file that is there is newer";
    return Reason(code, Dynazip::UnzipErrorMsg(static_cast<int>(code)));
}

bool IsReadOnly(const std::wstring& path) {
    struct _stat64 file;
    return ::_wstat64(path.c_str(), &file) == 0 && !(file.st_mode & S_IWRITE);
}

constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE;

// An archive is made beside the former one, which may well be open to all.
std::wstring WhyNotMade(const std::wstring& path) {
    const unsigned long error = ErrorOfOpening(path.c_str(), GENERIC_WRITE, kShared);
    const bool isOfFolder = error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND;
    return isOfFolder ? L"the folder takes no new file" : ReasonOf(error);
}

// Why an archive cannot be changed.
std::wstring ChangeReason(const std::wstring& archive, int code) {
    switch (code) {
        case ZIP_BUSY: return L"another program is changing it";
        case ZIP_TEMPORARY_FILE: return L"it is in use by another program";
        case ZIP_FILE_MISSING:
            return L"it cannot be opened: " +
                   WhyNotOpened(ErrorOfOpening(archive.c_str(), GENERIC_READ | GENERIC_WRITE, kShared));
        case ZIP_CANNOT_CREATE:
            return IsReadOnly(archive) ? L"it is read-only" : L"it cannot be made: " + WhyNotMade(archive);
        default: return Reason(code, Dynazip::ZipErrorMsg(code));
    }
}

std::wstring Amount(std::uint64_t bytes) {
    constexpr std::uint64_t kKilo = 1000, kMega = kKilo * kKilo;
    if (bytes < kMega) return std::to_wstring((bytes + kKilo - 1) / kKilo) + L" KB";
    const std::uint64_t tenths = bytes / (kMega / 10);
    return std::to_wstring(tenths / 10) + L'.' + std::to_wstring(tenths % 10) + L" MB";
}

// Where a call tells how far it is, and how much it has to do.
struct Work {
    Progress& line;
    std::uint64_t bytes = 0;  // 0: nobody knows
};

// Tells the progress line which member is worked on, and how far all is.
int QL_ZIP_CALL ShowProgress(const char* item, int percent, void* work) {
    const Work& all = *static_cast<Work*>(work);
    std::wstring shown = Shown(AnsiToRWWString(item).str()) + L", " + std::to_wstring(percent) + L" %";
    if (all.bytes > 0) shown += L" of " + Amount(all.bytes);
    all.line.Now(std::move(shown));
    return 0;
}

int QL_ZIP_CALL AddSize(const ZIPMEMBER* member, void* work) {
    static_cast<Work*>(work)->bytes += member->size;
    return 0;
}

// That reads or brings out all of an archive. Its members are asked only where somebody looks.
Work WorkOnAll(Progress& line, const std::wstring& archive) {
    Work work{line};
    if (line.IsShown()) Dynazip::ForEachMember(archive.c_str(), AddSize, &work);
    return work;
}

void AddFault(std::wstring& faults, const std::wstring& fault) {
    if (!faults.empty()) faults += L"; ";
    faults += fault;
}

// --- Adding

bool IsThere(const std::wstring& path) {
    return ::GetFileAttributesW(LiteralPath(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

int RequireLevel(const Arguments& arguments) {
    ZIPCMDSTRUCT usual;
    Dynazip::InitZIPCmdStruct(&usual);
    const auto given = arguments.Value(L"level");
    const int level = given ? RequireInt(*given, L"--level") : usual.compFactor;
    if (level < 0 || level > 9) throw WrongCall(L"--level must be 0 to 9");
    return level;
}

// Empty where the archive is what failed.
std::wstring WhyNotAdded(const std::vector<Source>& sources, std::size_t index, int code) {
    const Source& source = sources[index];
    const auto isSame = [&](const Source& other) {
        return ::_wcsicmp(other.name.c_str(), source.name.c_str()) == 0;
    };
    switch (code) {
        case ZIP_FILE_MISSING: return IsThere(source.path) ? L"" : L"it is not there";
        case ZIP_READ_FAILED:
            return L"it cannot be read: " +
                   WhyNotOpened(ErrorOfOpening(LiteralPath(source.path).c_str(), GENERIC_READ, kShared));
        case ZIP_NOTHING_TO_DO: return L"the archive has it, and not an older one";
        case ZIP_BAD_REQUEST:
            return std::any_of(sources.begin(), sources.begin() + static_cast<std::ptrdiff_t>(index), isSame)
                       ? L"another file of that name was given before"
                       : Reason(code, L"");
        default: return L"";
    }
}

std::wstring FaultsOf(const std::wstring& archive, const Sources& sources,
                      const std::vector<ZIPSOURCE>& done) {
    std::wstring faults;
    const auto addFault = [&](const std::wstring& path, const std::wstring& why) {
        AddFault(faults, L"cannot add " + Shown(path) + L" to " + archive + L": " + why);
    };
    for (const Refused& refused : sources.AllRefused()) addFault(refused.path, refused.why);
    int ofArchive = ZIP_DONE;
    for (std::size_t i = 0; i < done.size(); ++i) {
        if (done[i].code == ZIP_DONE) continue;
        const std::wstring why = WhyNotAdded(sources.All(), i, done[i].code);
        if (why.empty()) {
            ofArchive = done[i].code;
        } else {
            addFault(sources.All()[i].path, why);
        }
    }
    if (ofArchive != ZIP_DONE)
        AddFault(faults, L"cannot change " + archive + L": " + ChangeReason(archive, ofArchive));
    return faults;
}

Answer Add(const Arguments& arguments, Progress& progress) {
    const int level = RequireLevel(arguments);
    const std::wstring archive(arguments[0]);
    Sources sources(archive);
    for (std::wstring_view path : std::span(arguments.all()).subspan(1)) sources.Add(std::wstring(path));
    std::vector<ZIPSOURCE> files;
    for (const Source& source : sources.All()) files.push_back({source.path.c_str(), source.name.c_str(), 0});
    Work work{progress, progress.IsShown() ? sources.Bytes() : 0};
    const long code = Dynazip::AddFilesToZip(archive.c_str(), files.data(), static_cast<int>(files.size()),
                                             level, {ShowProgress, &work});
    if (code == ZIP_BAD_REQUEST)
        return Answer(Record{{L"added", 0}}, L"cannot change " + archive + L": " + Reason(code, L""));
    const auto added =
        std::count_if(files.begin(), files.end(), [](const ZIPSOURCE& file) { return file.code == 0; });
    Record record = {{L"added", static_cast<int>(added)}};
    std::wstring faults = FaultsOf(archive, sources, files);
    return faults.empty() ? Answer(std::move(record)) : Answer(std::move(record), std::move(faults));
}

// --- Reading

// "MM/DD/YY HH:MM:SS" with the year in full and the fields in the order in which they sort.
std::wstring SortableDate(const std::string& ansi) {
    if (ansi.size() < std::size("MM/DD/YY HH:MM:SS") - 1) return {};
    const std::wstring text(ansi.begin(), ansi.end());
    return std::to_wstring(ZipFullYear(std::stoi(ansi.substr(6, 2)))) + L'-' + text.substr(0, 2) + L'-' +
           text.substr(3, 2) + text.substr(8);
}

// A member as the engine told it. What `facts` points to is the engine's, and gone by now.
struct Member {
    ZIPMEMBER facts;
    std::wstring name;
    std::string ansiName, dateTime;
};

Record RecordOf(const Member& member) {
    const ZIPMEMBER& facts = member.facts;
    return {
        {L"index", static_cast<int>(facts.index)},
        {L"name", AnsiToRWWString(member.ansiName.c_str())},
        {L"size", static_cast<double>(facts.size)},
        {L"compressedSize", static_cast<double>(facts.packedSize)},
        {L"crc", static_cast<double>(facts.crc)},
        {L"date", SortableDate(member.dateTime)},
        {L"method", static_cast<int>(facts.method)},
        {L"isFolder", facts.isFolder != 0},
        {L"isEncrypted", facts.isEncrypted != 0},
        {L"trueName", member.name},
    };
}

struct Listing {
    std::deque<Member> members;
    std::uint64_t size = 0, packedSize = 0;
    std::wstring faults;
};

int QL_ZIP_CALL ListMember(const ZIPMEMBER* member, void* listing) {
    auto& all = *static_cast<Listing*>(listing);
    if (member->code != UNZIP_DONE) {
        AddFault(all.faults,
                 L"member " + std::to_wstring(member->index) + L" is beyond what the engine can tell");
    }
    all.size += member->size;
    all.packedSize += member->packedSize;
    all.members.push_back({*member, member->name, member->ansiName, member->dateTime});
    return 0;
}

Answer ListMembers(const Arguments& arguments, Progress&) {
    const std::wstring archive(arguments[0]);
    const auto listing = std::make_shared<Listing>();
    const long code = Dynazip::ForEachMember(archive.c_str(), ListMember, listing.get());
    if (code != UNZIP_DONE) return Answer::Failure(L"cannot list " + archive + L": " + UnzipReason(code));
    const std::size_t count = listing->members.size();
    Answer answer(Table{count, [listing](std::size_t i) { return RecordOf(listing->members[i]); }});
    answer.message = std::to_wstring(count) + (count == 1 ? L" member, " : L" members, ") +
                     std::to_wstring(listing->size) + L" bytes, packed " +
                     std::to_wstring(listing->packedSize);
    if (listing->faults.empty()) return answer;
    answer.status = kFailed;
    AddFault(answer.message, listing->faults);
    return answer;
}

// --- Changing, testing and bringing out members

Answer Outcome(long code, const std::wstring& reason, const std::wstring& what) {
    Record record = {{L"code", static_cast<int>(code)},
                     {L"message", code == ZIP_DONE ? L"" : reason.c_str()}};
    if (code == ZIP_DONE) return record;
    return Answer(std::move(record), L"cannot " + what + L": " + reason);
}

// What became of each member that was asked for.
struct Ended {
    int done = 0;
    List bad;
    std::wstring faults;
};

int QL_ZIP_CALL EndMember(const ZIPMEMBER* member, void* userData) {
    auto& ended = *static_cast<Ended*>(userData);
    if (member->code == UNZIP_DONE) {
        ++ended.done;
        return 0;
    }
    const std::wstring reason = UnzipReason(member->code);
    ended.bad.push_back(Record{
        {L"index", static_cast<int>(member->index)}, {L"name", member->name}, {L"reason", reason.c_str()}});
    AddFault(ended.faults,
             L"member " + std::to_wstring(member->index) + L", " + Shown(member->name) + L": " + reason);
    return 0;
}

// Whether no member fits the name. Folders are members where they are brought out too.
bool HasNone(const std::wstring& archive, const wchar_t* name, bool withFolders) {
    if (Dynazip::FileExistsInZip(archive.c_str(), name) == kYes || Dynazip::LastEngineCode() != UNZIP_DONE)
        return false;
    if (!withFolders) return true;
    // No file fits: to test what does reads nothing.
    ZipExtraction folders;
    folders.names = &name;
    folders.count = 1;
    folders.testsOnly = folders.withFolders = true;
    Ended ended;
    return Dynazip::ExtractMembers(archive.c_str(), L"", folders, EndMember, &ended) == UNZIP_NOTHING_TO_DO;
}

Answer Extract(const Arguments& arguments, Progress& progress) {
    const std::wstring archive(arguments[0]), folder(arguments[arguments.count() - 1]);
    std::vector<std::wstring> names;
    for (std::size_t i = 1; i + 1 < arguments.count(); ++i) names.emplace_back(arguments[i]);
    std::vector<const wchar_t*> pointers;
    pointers.reserve(names.size());
    for (const std::wstring& name : names) pointers.push_back(name.c_str());
    ZipExtraction what;
    what.names = pointers.data();
    what.count = static_cast<int>(pointers.size());
    what.withFolders = arguments.Has(L"paths");
    what.keepsNewer = !arguments.Has(L"overwrite");
    const bool isWhole = names.empty() && !arguments.Value(L"index");
    Work work = isWhole ? WorkOnAll(progress, archive) : Work{progress};
    what.progress = {ShowProgress, &work};
    if (const auto index = arguments.Value(L"index")) {
        what.index = RequireInt(*index, L"--index");
        if (what.index < 0 || !names.empty())
            throw WrongCall(L"--index is 0 or more, and stands for the names");
    }
    Ended ended;
    const long code = Dynazip::ExtractMembers(archive.c_str(), folder.c_str(), what, EndMember, &ended);
    for (const wchar_t* name : pointers) {
        if (HasNone(archive, name, what.withFolders))
            AddFault(ended.faults, L"there is no " + std::wstring(name) + L" in " + archive);
    }
    const std::wstring reason = ended.faults.empty() ? UnzipReason(code) : ended.faults;
    const wchar_t* message = code == UNZIP_DONE ? L"" : Dynazip::UnzipErrorMsg(static_cast<int>(code));
    Record record = {{L"code", static_cast<int>(code)}, {L"message", message}, {L"extracted", ended.done}};
    if (code == UNZIP_DONE && ended.faults.empty()) return record;
    return Answer(std::move(record),
                  L"cannot extract all that was asked for from " + archive + L": " + reason);
}

Answer Test(const Arguments& arguments, Progress& progress) {
    const std::wstring archive(arguments[0]);
    ZipExtraction what;
    what.testsOnly = what.withFolders = true;
    Work work = WorkOnAll(progress, archive);
    what.progress = {ShowProgress, &work};
    Ended ended;
    const long code = Dynazip::ExtractMembers(archive.c_str(), L"", what, EndMember, &ended);
    const bool isEmpty = code == UNZIP_NOTHING_TO_DO;
    if (code != UNZIP_DONE && !isEmpty && ended.bad.empty())
        return Answer::Failure(L"cannot test " + archive + L": " + UnzipReason(code));
    const int members = ended.done + static_cast<int>(ended.bad.size());
    Record record = {{L"members", members}, {L"bad", std::move(ended.bad)}};
    return ended.faults.empty() ? Answer(std::move(record))
                                : Answer(std::move(record), std::move(ended.faults));
}

Answer Delete(const Arguments& arguments, Progress& progress) {
    const std::wstring archive(arguments[0]), name(arguments[1]);
    progress.Now(L"deleting " + name);
    const long code = Dynazip::DeleteFileFromZip(archive.c_str(), name.c_str());
    return Outcome(code, ChangeReason(archive, static_cast<int>(code)),
                   L"delete " + name + L" of " + archive);
}

Answer CannotRead(const std::wstring& archive) {
    return Answer::Failure(L"cannot read " + archive + L": " + UnzipReason(Dynazip::LastEngineCode()));
}

Answer Comment(const Arguments& arguments, Progress& progress) {
    const std::wstring archive(arguments[0]);
    RWWString comment = Dynazip::GetComment(archive.c_str());
    if (Dynazip::LastEngineCode() != UNZIP_DONE) return CannotRead(archive);
    if (arguments.count() > 1) {
        progress.Now(L"commenting " + archive);
        const int code = Dynazip::SetComment(archive.c_str(), std::wstring(arguments[1]).c_str());
        if (code != kYes) {
            return Answer::Failure(L"cannot set the comment of " + archive + L": " +
                                   ChangeReason(archive, Dynazip::LastEngineCode()));
        }
        comment = Dynazip::GetComment(archive.c_str());
    }
    return Record{{L"comment", comment}};
}

Answer Find(const Arguments& arguments, Progress&) {
    const std::wstring archive(arguments[0]), name(arguments[1]);
    const int answer = Dynazip::FileExistsInZip(archive.c_str(), name.c_str());
    Record record = {{L"exists", answer == kYes}};
    if (answer == kYes) return record;
    const int code = Dynazip::LastEngineCode();
    return Answer(std::move(record), code == UNZIP_DONE
                                         ? L"there is no " + name + L" in " + archive
                                         : L"cannot look into " + archive + L": " + UnzipReason(code));
}

constexpr SwitchRow kAddSwitches[] = {{L"level", true}};
constexpr SwitchRow kExtractSwitches[] = {{L"paths"}, {L"index", true}, {L"overwrite"}};

constexpr Command kCommands[] = {
    {L"zip add", L"ARCHIVE FILE|FOLDER... [--level N]",
     L"Adds files (wild cards stand for all that fit) under their names alone and folders with all below "
     L"them but what links lead to, or replaces older members; N is 0 (store) to 9, usually 5.",
     kAddSwitches, 2, kAnyNumber, WithEngines<Add>},
    {L"zip list",
     L"ARCHIVE",
     L"The members of an archive, and how many and how large they are.",
     {},
     1,
     1,
     WithEngines<ListMembers>},
    {L"zip extract", L"ARCHIVE [ENTRY...] DIR [--paths] [--index N] [--overwrite]",
     L"Brings members (all, or those that fit the names, or the one at place N) to DIR, with --paths into "
     L"their folders. "
     L"Files that are newer than their members stay, but for --overwrite.",
     kExtractSwitches, 2, kAnyNumber, WithEngines<Extract>},
    {L"zip test", L"ARCHIVE", L"Reads every member and compares its check sum.", {}, 1, 1, WithEngines<Test>},
    {L"zip delete",
     L"ARCHIVE ENTRY",
     L"Takes the member of that whole path (or, with wild cards in its last part, all of that folder that "
     L"fit) away.",
     {},
     2,
     2,
     WithEngines<Delete>},
    {L"zip comment",
     L"ARCHIVE [TEXT]",
     L"The archive's comment; with TEXT, sets it first.",
     {},
     1,
     2,
     WithEngines<Comment>},
    {L"zip find",
     L"ARCHIVE ENTRY",
     L"Whether the archive has a member of that name.",
     {},
     2,
     2,
     WithEngines<Find>},
};

}  // namespace

std::span<const Command> ZipCommands() {
    return kCommands;
}
