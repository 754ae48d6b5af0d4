#pragma once

#include <memory>

#include "engine/archive.h"

namespace ql::zip {

// The directory of an archive, for calls that ask for one member each: the directory read last is kept, so
// that a walk reads it once. It counts only for the same file of the same size and time; a file that is
// replaced is another one. Safe on any thread. Throws as opening and reading do.
std::shared_ptr<const Archive> ListedArchive(const char* ansiPath);

}  // namespace ql::zip
