#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "engine/archive.h"

namespace ql::zip {

// The members that the names of an item list stand for, in the directory's order, each once. A name without
// wild cards that is a member's whole path stands for that path alone; any other for what it fits as a
// pattern (NamePatterns).
std::vector<std::size_t> SelectMembers(const Archive& archive, const std::vector<std::string>& items,
                                       bool anyDepth);

}  // namespace ql::zip
