#include <filesystem>
#include <iterator>
#include <span>
#include <vector>

#include "files/backup.h"
#include "files/directory_iterator.h"
#include "files/file_copy.h"
#include "files/full_path.h"
#include "files/machine.h"
#include "platform/win32.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/system_reason.h"

namespace {

RWWString Text(std::wstring_view word) {
    return RWWString(word);
}

QLFileName Name(std::wstring_view word) {
    return Text(word).data();
}

Answer CmdLine(const Arguments& arguments) {
    const QLCmdLine line(Text(arguments[0]).data());
    return Record{{L"file", line.GetPathAndFileName()},
                  {L"switches", line.GetSwitches()},
                  {L"cmdLine", line.GetCmdLine()},
                  {L"isNull", line.IsNull() != 0}};
}

Answer FullPath(const Arguments& arguments) {
    const RWWString directory = Text(arguments.Value(L"dir").value_or(L""));
    const RWWString extension = Text(arguments.Value(L"ext").value_or(L""));
    const QLCmdLine line = MakeFullPath(Text(arguments[0]), directory.data(),
                                        arguments.Has(L"ext") ? extension.data() : nullptr);
    return Record{{L"file", line.GetPathAndFileName()}, {L"switches", line.GetSwitches()}};
}

constexpr const wchar_t* kStatusNames[] = {L"StatusUnknown",   L"StatusInUse",        L"StatusWritable",
                                           L"StatusCreatable", L"StatusNotCreatable", L"StatusReadOnly"};

// Why the file cannot be written or created, or what was not asked; null when it can be.
Node ReasonFor(const QLFileName& name, QLFileName::Status status) {
    if (name.IsDirectory()) return L"a folder";
    if (status == QLFileName::StatusUnknown) return L"a remote name: nothing was asked";
    if (status == QLFileName::StatusReadOnly) return L"read-only";
    if (status != QLFileName::StatusInUse && status != QLFileName::StatusNotCreatable)
        return name.HasRoot() ? Node(nullptr) : Node(L"a relative name: whether it is there was not asked");
    const unsigned long error = ErrorOfOpening(name.GetPathAndFileName().data(), GENERIC_READ, 0);
    if (status == QLFileName::StatusNotCreatable && error == ERROR_FILE_NOT_FOUND)
        return L"the folder takes no new file";
    return RWWString(WhyNotOpened(error));
}

Record StatusOf(const QLFileName& name) {
    const QLFileName::Status status = name.GetStatus();
    return {{L"status", static_cast<int>(status)},
            {L"statusName", kStatusNames[status]},
            {L"exists", name.Exists() != 0},
            {L"isDirectory", name.IsDirectory() != 0},
            {L"canRead", name.CanAccess(QLFileName::ACCESS_READ) != 0},
            {L"canWrite", name.CanAccess(QLFileName::ACCESS_WRITE) != 0},
            {L"reason", ReasonFor(name, status)}};
}

// A word as the pattern of a walk: behind its last dot "?" and "#" are no tail.
QLFileName Pattern(std::wstring_view word) {
    const QLFileName name = Name(word);
    QLFileName pattern;
    pattern.SetEntry(name, name.GetFileName() + name.GetTail());
    return pattern;
}

bool IsPattern(std::wstring_view word) {
    return word.find_first_of(L"*?") != std::wstring_view::npos && !Name(word).IsRemote();
}

// The names that words stand for: those that a pattern matches, or the word itself.
std::vector<QLFileName> NamesOf(std::span<const std::wstring_view> words) {
    std::vector<QLFileName> names;
    for (const std::wstring_view word : words) {
        if (!IsPattern(word)) {
            names.push_back(Name(word));
            continue;
        }
        CDirectoryIterator walk;
        QLFileName entry;
        for (bool more = walk.First(Pattern(word), &entry); more; more = walk.Next(&entry))
            names.push_back(entry);
    }
    return names;
}

Answer Status(const Arguments& arguments) {
    if (arguments.count() == 1 && !IsPattern(arguments[0])) return StatusOf(Name(arguments[0]));
    List rows;
    for (const QLFileName& name : NamesOf(arguments.all())) {
        Record row = StatusOf(name);
        row.emplace(row.begin(), L"file", name.GetPathAndFileName());
        rows.push_back(std::move(row));
    }
    return rows;
}

Answer Forms(const Arguments& arguments) {
    const QLFileName name = Name(arguments[0]);
    return Record{{L"long", name.GetLongPathAndFileName()},
                  {L"short", name.GetShortVersion()},
                  {L"unc", name.GetUNCPathAndFileName()}};
}

Answer Temp(const Arguments& arguments) {
    QLFileName name;
    if (arguments.count() > 0) name = Name(arguments[0]);
    name.SetTempFileName(arguments.Has(L"create"));
    if (name.GetFileName().isNull())
        return Answer::Failure(L"no file can be made in " + name.GetPath().str());
    return Record{{L"file", name.GetPathAndFileName()}};
}

Answer Backup(const Arguments& arguments) {
    wchar_t message[256] = {};
    const bool ok = BackupFile(Name(arguments[0]), message, static_cast<int>(std::size(message)));
    const DWORD error = ::GetLastError();
    Record record = {{L"ok", ok}, {L"message", message}};
    if (ok) return record;
    return Answer(std::move(record), std::wstring(arguments[0]) + L": " + message + L' ' + ReasonOf(error));
}

Answer Copy(const Arguments& arguments) {
    const std::wstring destination(arguments[0]), source(arguments[1]);
    unsigned long error = 0;
    const bool ok =
        MakeFileCopy(destination.c_str(), source.c_str(), arguments.Has(L"keep-times"), error) != 0;
    const DWORD reason = ::GetLastError();
    Record record = {{L"ok", ok}, {L"error", error}};
    if (ok) return record;
    return Answer(std::move(record),
                  L"cannot copy " + source + L" to " + destination + L": " +
                      (reason == ERROR_INVALID_PARAMETER ? L"they are one file" : ReasonOf(reason)));
}

Answer Exe(const Arguments& arguments) {
    const std::wstring file(arguments[0]);
    Record record = {{L"is32BitExe", Is32BitExe(file.c_str()) != 0}};
    std::error_code ignored;
    if (std::filesystem::exists(file, ignored)) return record;
    return Answer(std::move(record), L"there is no file " + file);
}

Answer Walk(const Arguments& arguments) {
    List entries;
    CDirectoryIterator walk;
    QLFileName entry;
    for (bool more = walk.First(Pattern(arguments[0]), &entry); more; more = walk.Next(&entry)) {
        entries.push_back(Record{{L"file", entry.GetPathAndFileName()}, {L"isDir", walk.IsDir()}});
    }
    return entries;
}

constexpr SwitchRow kFullPathSwitches[] = {{L"dir", true}, {L"ext", true}};
constexpr SwitchRow kTempSwitches[] = {{L"create"}};
constexpr SwitchRow kCopySwitches[] = {{L"keep-times"}};

constexpr Command kCommands[] = {
    {L"cmdline", L"TEXT", L"The file name and the switches of a command line.", {}, 1, 1, CmdLine},
    {L"fullpath", L"TEXT [--dir D] [--ext E]",
     L"The full path that a name stands for: below D, a named location or the folder of its kind.",
     kFullPathSwitches, 1, 1, FullPath},
    {L"file status",
     L"PATH...",
     L"Whether files are there, what could be done with them, and why no more.",
     {},
     1,
     kAnyNumber,
     Status},
    {L"file forms", L"PATH", L"The long, short and network forms of a path.", {}, 1, 1, Forms},
    {L"file temp", L"[PATH] [--create]",
     L"A name that no file has, with the folder and the extension of PATH; --create makes the file.",
     kTempSwitches, 0, 1, Temp},
    {L"file backup", L"PATH", L"Copies a file to its backup, and that to the second one.", {}, 1, 1, Backup},
    {L"file copy", L"DEST SOURCE [--keep-times]", L"Copies SOURCE to DEST.", kCopySwitches, 2, 2, Copy},
    {L"file exe", L"PATH", L"Whether the signature of a program reads as wide text.", {}, 1, 1, Exe},
    {L"file walk", L"PATTERN", L"The entries of a folder that match a pattern.", {}, 1, 1, Walk},
};

}  // namespace

std::span<const Command> FileCommands() {
    return kCommands;
}
