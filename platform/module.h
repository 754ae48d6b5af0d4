#pragma once

#include <string>

#include "platform/win32.h"

namespace ql {

// The handle of the module that this code was linked into: the library's own when it is a DLL. Null until the
// system has loaded the module.
HMODULE OwnModule() noexcept;

// Whether the process ends: the system has ended its other threads, and tells its modules.
bool ProcessIsEnding() noexcept;

// The full path of that module's file; empty when the system does not tell.
std::wstring OwnModulePath();

}  // namespace ql
