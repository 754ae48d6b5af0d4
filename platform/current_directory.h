#pragma once

#include <string>

namespace ql {

// The process's current directory, of any length; empty when the system does not tell.
std::wstring CurrentDirectory();

}  // namespace ql
