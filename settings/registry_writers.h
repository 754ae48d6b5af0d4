#pragma once

// The library's own writers of preferences, all to the current user's key of the section, which is made when
// missing. Registry errors are ignored.
namespace ql {

void WriteRegistryText(const wchar_t* section, const wchar_t* entry,
                       const wchar_t* text);  // null deletes the value
void WriteRegistryInteger(const wchar_t* section, const wchar_t* entry, int value);
void WriteRegistryBoolean(const wchar_t* section, const wchar_t* entry, bool value);

}  // namespace ql
