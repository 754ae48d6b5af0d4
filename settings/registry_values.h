#pragma once

#include "rw/wide_string.h"

// The library's own way to single preferences in the registry. Registry errors are ignored; what runs out of
// memory throws std::bad_alloc.
namespace ql {

// The current user's value, else the machine's; false, and the value as it was, when there is none.
bool ReadFromRegistry(const wchar_t* section, const wchar_t* entry, RWWString& value);
bool ReadFromRegistry(const wchar_t* section, const wchar_t* entry, int& value);
bool ReadFromRegistry(const wchar_t* section, const wchar_t* entry, bool& value);

// To the current user's key of the section, which is made when missing. A null text deletes the value.
void WriteToRegistry(const wchar_t* section, const wchar_t* entry, const wchar_t* text);
void WriteToRegistry(const wchar_t* section, const wchar_t* entry, int value);
void WriteToRegistry(const wchar_t* section, const wchar_t* entry, bool value);

}  // namespace ql
