#pragma once

#include <concepts>

#include "names/cmd_line.h"
#include "platform/export.h"
#include "rw/wide_string.h"

// Completes a name to a full path. Rooted names are complete; null names (with switches or without), remote
// and plug-in names are answered unchanged. A relative name goes below, first that applies:
//  - the template directory, when it begins with a backslash;
//  - the named location, when it begins with a caret: ^Shared\x.docx is x.docx in the location "Shared",
//    and \x.docx when there is no such location; a caret without a separator behind it belongs to the name;
//  - `defaultDir`, when that is given;
//  - the directory of its kind: a template's processor's templates, the answer directory;
//  - the template directory.
// `defaultExt`, when it is given, replaces the extension, also of a rooted name. Null arguments are not
// given, and neither is an empty directory. The switches stay. Texts are parsed as command lines. Any thread.
// Nothing throws: when memory ends, the name is null.
QL_API QLCmdLine MakeFullPath(const QLCmdLine& cmdLine, const wchar_t* defaultDir, const wchar_t* defaultExt);
QL_API QLCmdLine MakeFullPath(const QLFileName& name, const wchar_t* defaultDir, const wchar_t* defaultExt);
QL_API QLCmdLine MakeFullPath(const RWWString& text, const wchar_t* defaultDir, const wchar_t* defaultExt);
template <std::convertible_to<ql::TextView> Text>
QLCmdLine MakeFullPath(const Text& text, const wchar_t* defaultDir, const wchar_t* defaultExt) {
    return MakeFullPath(QLCmdLine(text), defaultDir, defaultExt);
}

// The directory of a named location: the preference of that name in the section "Locations", the user's
// first, else the one that the previous generation of the product left, the machine's first; one of more
// than 256 units counts as none. Empty when there is none.
QL_API RWWString GetCaretPath(const RWWString& locationName);
