#pragma once

#include "platform/export.h"
#include "rw/wide_string.h"

// The everyday way to preferences. A read asks the calling thread's settings store
// (settings/settings_store.h), which reads the registry once, the current user's first; so a thread can
// override a preference in memory. A write goes to the current user's registry, the global store and the
// thread's store, in this order. Before CQlsSettings::Initialize and after Uninitialize there is no store:
// reads then go to the registry each time.
//
// Safe on any thread: of several writers of one preference one comes last, in the registry as in the stores.
// Nothing here throws; a text for which there is no memory is empty. Null texts count as empty, except where
// null means "delete". What cannot be read is the default, what cannot be written is not reported. A
// preference must be used with one type: through another one readers give the default, and a write reaches
// the registry but not a store that holds it already.
//
// Kept on purpose: a store remembers a preference that it did not find by the default of its first reader,
// which is what every later reader gets, whatever default it names; that goes for the library's own
// preferences too. So each has one default, and the library's those of settings/preference_keys.h. Stores
// compare names unit by unit, the registry without regard to case: a name has one spelling.

// The text, or the default when there is none or it is empty. A text that is no boolean is false.
QL_API RWWString GetQLRegString(const wchar_t* section, const wchar_t* entry, const wchar_t* defaultText);
QL_API int GetQLRegInt(const wchar_t* section, const wchar_t* entry, int defaultValue);
QL_API bool GetQLRegBool(const wchar_t* section, const wchar_t* entry, bool defaultValue);

// Colours are red + 256 green + 65536 blue, and texts "red,green,blue".
QL_API unsigned long GetQLRegColor(const wchar_t* section, const wchar_t* entry, unsigned long defaultColor);

// A null text deletes the user's value, so that the next read finds the machine's value or the default. Kept
// on purpose: it clears the calling thread's store only. When that is not the global store, threads that read
// the global store keep the value they had.
QL_API void WriteQLRegString(const wchar_t* section, const wchar_t* entry, const wchar_t* text);
QL_API void WriteQLRegInt(const wchar_t* section, const wchar_t* entry, int value);
QL_API void WriteQLRegBool(const wchar_t* section, const wchar_t* entry, bool value);
QL_API void WriteQLRegColor(const wchar_t* section, const wchar_t* entry, unsigned long color);

// The text as it stands, also when it is empty; the default only when there is none.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the exported name is settled.
QL_API RWWString _GetQLProfileString(const wchar_t* section, const wchar_t* entry,
                                     const wchar_t* defaultText);

// The text without one trailing backslash, empty when there is none: "D:\Work\" -> "D:\Work".
QL_API RWWString GetQLProfileDir(const wchar_t* section, const wchar_t* entry);
