#pragma once

#include <string>

#include "logging/os_facts.h"

namespace ql {

// What a system of these facts calls itself.
std::wstring DescribeOs(const OsFacts& facts);

}  // namespace ql
