// Takes a text apart, puts it together and takes that apart again: an ordinary name must stand still from
// then on, and whatever the text is, the name must be whole. Each line of the input is a text.
#include "names/file_name.h"
#include "names/file_type.h"
#include "tests/fuzz/fuzz.h"

namespace {

bool SameFields(const QLFileName& a, const QLFileName& b) {
    return a.GetScheme() == b.GetScheme() && a.GetRoot() == b.GetRoot() && a.GetDir() == b.GetDir() &&
           a.GetName() == b.GetName() && a.GetFileName() == b.GetFileName() && a.GetTail() == b.GetTail() &&
           a.GetRootSeparator() == b.GetRootSeparator() && a.GetDirSeparator() == b.GetDirSeparator() &&
           a.IsRemote() == b.IsRemote() && a.HasExtension() == b.HasExtension();
}

bool IsWebName(const QLFileName& name) {
    return name.GetScheme() == QLFileName::HTTP || name.GetScheme() == QLFileName::HTTPS;
}

// Names whose text says all: local ones without tail, and web names. What the environment brings in is taken
// apart anew; quotes, the tails of other names and the blanks before those go at the next parsing.
bool IsOrdinary(const QLFileName& name, const std::wstring& text, const std::wstring& composed) {
    if (text.find(L'%') != std::wstring::npos || composed.find(L'"') != std::wstring::npos) return false;
    return IsWebName(name) || (!name.IsRemote() && name.GetTail().isNull());
}

void CheckWhole(const QLFileName& name, const std::wstring& composed) {
    RWWString extension(L"none");
    Expect(name.GetExtension(extension) == name.HasExtension());
    Expect(name.HasExtension() ? extension.view().starts_with(L'.') : extension == L"none");
    Expect(!name.IsNull() || composed.empty());
    Expect(name.IsRemote() || name.GetPath().length() <= composed.size());
    Expect(name.CompareTo(QLFileName(name)) == 0);
    Expect(name.GetCmdLine().length() >= composed.size());
    Expect(SameFields(name, QLFileName(name)));
}

void CheckStable(const QLFileName& name, const std::wstring& composed) {
    const QLFileName again(composed.c_str());
    Expect(again.GetPathAndFileName().view() == composed);
    QLFileName assigned;
    assigned = again;
    Expect(SameFields(again, assigned));
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
    Expect(name.GetDir().length() == before.GetDir().length() && name.CompareTo(before) == 0);
    name.Reset();
    Expect(name.IsNull() && SameFields(name, QLFileName()));
}

void Check(const std::wstring& text) {
    const QLFileName name(text.c_str());
    const std::wstring composed = name.GetPathAndFileName().str();
    CheckWhole(name, composed);
    if (IsOrdinary(name, text, composed)) CheckStable(name, composed);
    CheckChanges(name, text.c_str());
    Expect(GetDocumentType(name) == GetDocumentType(text.c_str()));
    Expect(GetFileType(name) != FT_NONE || !IsQuilletFileType(name));
}

}  // namespace

FUZZER(FileName, "", "a", "b.c", "\\", "/", ":", ".", "?", "#", "http://", "C:", "::ODMA\\", "PLUGIN\\{x}",
       "\"", " ", "\n") {
    ForEachLine(input, Check);
}
