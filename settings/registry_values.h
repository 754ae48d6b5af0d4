#pragma once

#include <string>
#include <string_view>

#include "platform/win32.h"
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

// QLRegStringToColor of a text that a zero follows.
unsigned long ColorOf(std::wstring_view text, unsigned long defaultColor) noexcept;

// A text of another product's key; empty where there is none, or one of more units. No entry stands for the
// key's own value.
RWWString ReadForeignText(HKEY root, const std::wstring& path, const wchar_t* entry, std::size_t mostUnits);

}  // namespace ql
