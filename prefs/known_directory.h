#pragma once

#include "prefs/directories.h"

namespace ql {

// CQlDir::GetDirectory, but throwing when memory ends.
RWWString KnownDirectory(QuilletDirectories kind);

}  // namespace ql
