#pragma once

#include "names/file_name.h"
#include "rw/wide_string.h"

// What the programs' parsers make of switch values alike.
namespace ql {

// The full path of a file against a directory, which is asked for only where the name has no root: that can
// cost more than the rest of the line. A document-management id stays as it is.
QLFileName FullName(const QLFileName& name, RWWString (*directory)());
QLFileName FullNameHere(const QLFileName& name);  // against the current directory

RWWString UpToBlank(const wchar_t* value);

// The digits that the value begins with, as a number: 0 when there are none, and never above the largest
// long.
long LeadingNumber(const wchar_t* value);

}  // namespace ql
