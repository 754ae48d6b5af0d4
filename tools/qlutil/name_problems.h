#pragma once

#include <string>
#include <vector>

#include "names/file_name.h"

// What a Windows file system would refuse about a name, or not keep of it, one sentence each; nothing for a
// name that it takes.
std::vector<std::wstring> ProblemsOf(const QLFileName& name);
