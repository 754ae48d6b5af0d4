#include <sys/stat.h>
#include <wchar.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "files/directory_iterator.h"
#include "text/ansi_text.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/progress.h"
#include "zip/dynazip.h"

namespace {

constexpr int kOk = 0;
constexpr int kAdded = 1, kYes = 1;
constexpr int kNotAcceptable = 16;
constexpr int kNoSuchIndex = 25;
// A member whose numbers do not fit the record; the archive itself is sound.
constexpr int kNotListed = 49;

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

std::wstring Reason(long code, const wchar_t* message) {
    if (code == kNotAcceptable) return L"a text has characters that the ANSI code page lacks";
    return *message ? message : L"code " + std::to_wstring(code);
}

std::wstring UnzipReason(int code) {
    return Reason(code, Dynazip::UnzipErrorMsg(code));
}

// Why the archive cannot be read; empty when it can.
std::wstring FaultOf(const std::wstring& archive) {
    ZIPINFO first;
    const int code = Dynazip::GetIndexedZipInfo(archive.c_str(), 0, &first);
    return code == kOk || code == kNoSuchIndex || code == kNotListed ? L"" : UnzipReason(code);
}

// --- Adding

struct SplitPath {
    std::wstring folder, name;
};

SplitPath Split(std::wstring_view path) {
    const std::size_t last = path.find_last_of(L"\\/:") + 1;
    std::wstring folder(path.substr(0, last));
    // The library puts a separator between the two: after "C:" it would change the folder.
    if (folder.empty() || folder.back() == L':') folder += L'.';
    return {std::move(folder), std::wstring(path.substr(last))};
}

// The library says only that a file was not added.
std::wstring WhyNotAdded(const std::wstring& archive, const std::wstring& path, long code) {
    if (code == kNotAcceptable) return Reason(code, L"");
    struct _stat64 file;
    if (::_wstat64(path.c_str(), &file) != 0) return L"it is not there";
    if (file.st_mode & S_IFDIR) return L"it is a folder";
    std::int64_t time = 0;
    int size = 0;
    const std::wstring name = Split(path).name;
    const bool isMember =
        Dynazip::GetFileDateAndSizeFromZip(archive.c_str(), name.c_str(), time, size) == kOk;
    // Archives keep even seconds.
    if (isMember && time >= file.st_mtime / 2 * 2) return L"the archive has it, and not an older one";
    struct _stat64 former;
    if (::_wstat64(archive.c_str(), &former) != 0) return L"the archive cannot be made";
    const std::wstring fault = FaultOf(archive);
    return fault.empty() ? L"it cannot be read, or the archive cannot be changed" : fault;
}

std::wstring CannotAdd(const std::wstring& archive, const std::wstring& path, long code) {
    return L"cannot add " + path + L" to " + archive + L": " + WhyNotAdded(archive, path, code);
}

int RequireLevel(const Arguments& arguments) {
    ZIPCMDSTRUCT usual;
    Dynazip::InitZIPCmdStruct(&usual);
    const auto given = arguments.Value(L"level");
    const int level = given ? RequireInt(*given, L"--level") : usual.compFactor;
    if (level < 0 || level > 9) throw WrongCall(L"--level must be 0 to 9");
    return level;
}

// The library would add all that fit wild cards and call it one file. What fits nothing stands for itself.
std::vector<std::wstring> FilesThatFit(const std::wstring& path, const std::wstring& archive) {
    std::vector<std::wstring> files;
    CDirectoryIterator entries;
    QLFileName entry;
    const bool hasCards = path.find_first_of(L"*?") != std::wstring::npos;
    for (bool more = hasCards && entries.First(path.c_str(), &entry); more; more = entries.Next(&entry)) {
        std::wstring file = entry.GetPathAndFileName().str();
        std::error_code none;
        if (!entries.IsDir() && !std::filesystem::equivalent(file, archive, none))
            files.push_back(std::move(file));
    }
    if (files.empty()) files.push_back(path);
    return files;
}

std::vector<std::wstring> FilesOf(const Arguments& arguments, const std::wstring& archive) {
    std::vector<std::wstring> files;
    for (std::wstring_view path : std::span(arguments.all()).subspan(1)) {
        for (std::wstring& file : FilesThatFit(std::wstring(path), archive)) files.push_back(std::move(file));
    }
    return files;
}

Answer Add(const Arguments& arguments, Progress& progress) {
    const int level = RequireLevel(arguments);
    const std::wstring archive(arguments[0]);
    const std::vector<std::wstring> files = FilesOf(arguments, archive);
    std::wstring faults;
    int added = 0, tried = 0;
    for (const std::wstring& file : files) {
        const auto [folder, name] = Split(file);
        progress.Now(L"adding " + std::to_wstring(++tried) + L" of " + std::to_wstring(files.size()) + L": " +
                     name);
        const long code = Dynazip::AddFileToZip(archive.c_str(), folder.c_str(), name.c_str(), level);
        if (code == kAdded) {
            ++added;
            continue;
        }
        if (!faults.empty()) faults += L"; ";
        faults += CannotAdd(archive, file, code);
    }
    Record record = {{L"added", added}};
    return faults.empty() ? Answer(std::move(record)) : Answer(std::move(record), std::move(faults));
}

// --- Reading

// "MM/DD/YY HH:MM:SS" with the year in full and the fields in the order in which they sort; years from 80 on are of the
// last century.
std::wstring SortableDate(const ZIPINFO& info) {
    const std::wstring text(std::begin(info.szDateTime), std::end(info.szDateTime) - 1);
    const std::wstring year = text.substr(6, 2);
    return (year < L"80" ? L"20" : L"19") + year + L'-' + text.substr(0, 2) + L'-' + text.substr(3, 2) +
           text.substr(8);
}

Record Describe(int index, const ZIPINFO& info) {
    const std::string name(std::begin(info.szFileName),
                           std::find(std::begin(info.szFileName), std::end(info.szFileName), '\0'));
    return {
        {L"index", index},
        {L"name", AnsiToRWWString(name.c_str())},
        {L"size", static_cast<unsigned long>(info.oSize)},
        {L"compressedSize", static_cast<unsigned long>(info.cSize)},
        {L"crc", static_cast<unsigned long>(info.crc_32)},
        {L"date", SortableDate(info).c_str()},
    };
}

Answer CannotList(const std::wstring& archive, int index, int code) {
    const std::wstring from = index == 0 ? L"" : L" from member " + std::to_wstring(index) + L" on";
    return Answer::Failure(L"cannot list " + archive + from + L": " + UnzipReason(code));
}

Answer ListMembers(const Arguments& arguments, Progress&) {
    const std::wstring archive(arguments[0]);
    List members;
    for (int index = 0;; ++index) {
        ZIPINFO info{};
        const int code = Dynazip::GetIndexedZipInfo(archive.c_str(), index, &info);
        if (code == kNoSuchIndex) return members;
        if (code != kOk) return CannotList(archive, index, code);
        members.push_back(Describe(index, info));
    }
}

// --- Changing and bringing out one member

Answer Outcome(long code, const std::wstring& reason, const std::wstring& what) {
    Record record = {{L"code", static_cast<int>(code)}, {L"message", code == kOk ? L"" : reason.c_str()}};
    if (code == kOk) return record;
    return Answer(std::move(record), L"cannot " + what + L": " + reason);
}

Answer Extract(const Arguments& arguments, Progress& progress) {
    const std::wstring archive(arguments[0]), name(arguments[1]), folder(arguments[2]);
    progress.Now(L"extracting " + name);
    const long code = Dynazip::ExtractFileFromZip(archive.c_str(), name.c_str(), folder.c_str());
    return Outcome(code, UnzipReason(static_cast<int>(code)),
                   L"extract " + name + L" of " + archive + L" to " + folder);
}

Answer Delete(const Arguments& arguments, Progress& progress) {
    const std::wstring archive(arguments[0]), name(arguments[1]);
    progress.Now(L"deleting " + name);
    const long code = Dynazip::DeleteFileFromZip(archive.c_str(), name.c_str());
    const wchar_t* message = Dynazip::ZipErrorMsg(static_cast<int>(code));
    return Outcome(code, Reason(code, message), L"delete " + name + L" of " + archive);
}

Answer Comment(const Arguments& arguments, Progress& progress) {
    const std::wstring archive(arguments[0]);
    const std::wstring fault = FaultOf(archive);
    if (!fault.empty()) return Answer::Failure(L"cannot read " + archive + L": " + fault);
    if (arguments.count() > 1) {
        progress.Now(L"commenting " + archive);
        const int code = Dynazip::SetComment(archive.c_str(), std::wstring(arguments[1]).c_str());
        const wchar_t* why =
            L"it is too long or looks like the end of an archive, or the archive cannot be changed";
        if (code != kYes)
            return Answer::Failure(L"cannot set the comment of " + archive + L": " + Reason(code, why));
    }
    return Record{{L"comment", Dynazip::GetComment(archive.c_str())}};
}

Answer Find(const Arguments& arguments, Progress&) {
    const std::wstring archive(arguments[0]), name(arguments[1]);
    const int code = Dynazip::FileExistsInZip(archive.c_str(), name.c_str());
    Record record = {{L"exists", code == kYes}};
    if (code == kYes) return record;
    const std::wstring fault = code == kNotAcceptable ? Reason(code, L"") : FaultOf(archive);
    return Answer(std::move(record), fault.empty() ? L"there is no " + name + L" in " + archive
                                                   : L"cannot look into " + archive + L": " + fault);
}

constexpr SwitchRow kAddSwitches[] = {{L"level", true}};

constexpr Command kCommands[] = {
    {L"zip add", L"ARCHIVE FILE... [--level N]",
     L"Adds files (wild cards stand for all that fit) under their names alone, or replaces older members; N "
     L"is 0 (store) to 9, usually 5.",
     kAddSwitches, 2, kAnyNumber, WithEngines<Add>},
    {L"zip list", L"ARCHIVE", L"The members of an archive.", {}, 1, 1, WithEngines<ListMembers>},
    {L"zip extract",
     L"ARCHIVE ENTRY DIR",
     L"Brings a member (or all that fit a name with wild cards) to DIR, without its folders.",
     {},
     3,
     3,
     WithEngines<Extract>},
    {L"zip delete",
     L"ARCHIVE ENTRY",
     L"Takes a member (or all that fit a name with wild cards) away.",
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
