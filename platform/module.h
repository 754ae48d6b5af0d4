#pragma once

#include <string>

namespace ql {

// Whether the process ends: the system has ended its other threads, and tells its modules.
bool ProcessIsEnding() noexcept;

// The full path of the file that this code was linked into, the library's own when it is a DLL; empty when
// the system does not tell.
std::wstring OwnModulePath();

}  // namespace ql
