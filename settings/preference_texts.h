#pragma once

#include "rw/wide_string.h"

// The texts of settings/preferences.h and settings/registry.h as the library itself asks for them: what runs
// out of memory throws, so that the caller's own failure is answered, and not what another value leads to.
namespace ql {

RWWString PreferenceText(const wchar_t* section, const wchar_t* entry);       // GetQLRegString, no default
RWWString PreferenceDirectory(const wchar_t* section, const wchar_t* entry);  // GetQLProfileDir
RWWString RegistryDirectory(const wchar_t* section, const wchar_t* entry, bool machine);  // GetQLProfileDirEx

}  // namespace ql
