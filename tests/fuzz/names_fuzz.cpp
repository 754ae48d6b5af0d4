// Takes a text apart as a name and as a command line, puts it together and takes that apart again: an
// ordinary one must stand still from then on, and whatever the text is, the name must be whole. Then the same
// text as an open command of the registry. Each line of the input is a text.
#include <sstream>
#include <tuple>

#include "names/cmd_line.h"
#include "names/file_type.h"
#include "tests/fuzz/fuzz.h"
#include "textproc/form_proc_program.h"

namespace {

bool Has(const std::wstring& text, const wchar_t* part) {
    return text.find(part) != std::wstring::npos;
}

auto FieldsOf(const QLFileName& name) {
    return std::tuple(name.GetScheme(), name.GetRoot(), name.GetDir(), name.GetName(), name.GetFileName(),
                      name.GetTail(), name.GetRootSeparator(), name.GetDirSeparator(), name.IsRemote(),
                      name.HasExtension());
}

bool IsWebName(const QLFileName& name) {
    return name.GetScheme() == QLFileName::HTTP || name.GetScheme() == QLFileName::HTTPS;
}

// Names whose text says all: local ones without tail, and web names. What the environment brings in is taken
// apart anew; quotes, the tails of other names and the blanks before those go at the next parsing.
bool IsOrdinary(const QLFileName& name, const std::wstring& text, const std::wstring& composed) {
    if (Has(text, L"%") || Has(composed, L"\"")) return false;
    return IsWebName(name) || (!name.IsRemote() && name.GetTail().isNull());
}

// Command lines whose text says all: names without quotes, references and tails, and switches that are told
// from them, by a closing quote or by a slash that is the first.
bool IsOrdinary(const QLCmdLine& line) {
    const std::wstring name = line.GetPathAndFileName().str(), switches = line.GetSwitches().str();
    if (line.IsRemote() || !line.GetTail().isNull() || Has(name, L"\"") || Has(name, L"%")) return false;
    return Has(name, L" /") || (!Has(name, L"/") && (switches.empty() || switches.front() == L'/'));
}

void CheckWhole(const QLFileName& name, const std::wstring& text) {
    const std::wstring composed = name.GetPathAndFileName().str();
    RWWString extension(L"none");
    Expect(name.GetExtension(extension) == name.HasExtension());
    Expect(name.HasExtension() ? extension.view().starts_with(L'.') : extension == L"none");
    Expect(!name.IsNull() || composed.empty());
    Expect(name.IsRemote() || name.GetPath().length() <= composed.size());
    Expect(name.GetCmdLine().length() >= composed.size());
    const QLFileName copy(name), again(composed.c_str());
    QLFileName assigned;
    assigned = name;
    Expect(name.CompareTo(copy) == 0);
    Expect(FieldsOf(name) == FieldsOf(copy));
    Expect(assigned.GetPathAndFileName() == again.GetPathAndFileName());
    Expect(assigned.GetTail() == again.GetTail());
    assigned = *&assigned;
    if (!IsOrdinary(name, text, composed)) return;
    Expect(again.GetPathAndFileName().view() == composed);
    Expect(IsWebName(name) == IsWebName(again));
}

void CheckChanges(QLFileName name, const wchar_t* text) {
    name.SetFileName(text);
    name.SetPath(text);
    name.SetExtension(text);
    Expect(name.PrependPath(text) == 1);
    Expect(name.HasExtension() == 1);
    const QLFileName before(name);
    name.ToLower();
    name.ToUpper();
    Expect(name.GetDir().length() == before.GetDir().length());
    Expect(name.CompareTo(before) == 0);
    name.Reset();
    Expect(name.IsNull());
    Expect(FieldsOf(name) == FieldsOf(QLFileName()));
}

void CheckLine(const QLCmdLine& line) {
    Expect(line.IsNull() == (line.QLFileName::IsNull() && line.GetSwitches().isNull()));
    QLCmdLine other(line);
    Expect(other == line);
    other.SetSwitches(line.GetSwitches().data());
    other.AppendSwitches(L"/x");
    Expect(other.CompareTo(line) > 0);
    other.Reset();
    Expect(other.IsNull());
    Expect(other.GetCmdLine().isNull());
    other = line;
    Expect(other.GetSwitches() == line.GetSwitches());
    if (!IsOrdinary(line)) return;
    const QLCmdLine again(line.GetCmdLine().data());
    Expect(again.GetCmdLine() == line.GetCmdLine());
    Expect(again.GetPathAndFileName() == line.GetPathAndFileName());
    Expect(again.GetSwitches() == line.GetSwitches());
}

void Check(const std::wstring& text) {
    const QLFileName name(text.c_str());
    CheckWhole(name, text);
    CheckChanges(name, text.c_str());
    Expect(GetDocumentType(name) == GetDocumentType(text.c_str()));
    Expect(GetFileType(name) != FT_NONE || !IsQuilletFileType(name));
    CheckLine(QLCmdLine(text.c_str()));
    CheckLine(FormalizeFormProcCmdLine(text.c_str()));
}

}  // namespace

FUZZER(Names, "", "a", "b.c", " ", "\\", "/", ":", ".", "?", "#", "http://", "ftp:", "C:", "::ODMA\\",
       "PLUGIN\\{x}", "\"", "%1", "/ddeex", ".exe", "\n") {
    std::wistringstream lines(std::wstring(input.begin(), input.end()));
    for (std::wstring line; std::getline(lines, line);) Check(line.c_str());  // to its first zero
}
