#pragma once

#include "names/file_type.h"
#include "platform/export.h"
#include "rw/wide_string.h"

// How documents are made known to a document-management system: an application id and a format name for each
// kind of file, kept as preferences of the section "File Mgt". Kinds share ids, and those of one extension
// format names; writing one kind's writes that of all who share it. Safe on any thread; preferences are read
// as settings/preferences.h tells. Nothing throws: without memory a text is empty, and nothing is written.

// The usual id of the kind's programs until another one is set; null clears what was set, and the empty text
// stands for the usual id too.
QL_API RWWString GetOdmaApplicationId(FileType kind);
QL_API void SetOdmaApplicationId(FileType kind, const wchar_t* id);

// The kind's extension with its dot, until another name is set. An empty name, or the extension, clears what
// was set.
QL_API RWWString GetOdmaFormatName(FileType kind);
QL_API void SetOdmaFormatName(FileType kind, const wchar_t* name);
