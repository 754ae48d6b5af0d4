#pragma once

#include <cstdint>
#include <string>

#include "engine/file_access.h"

namespace ql::zip {

// What the end of an archive tells of its directory.
struct ArchiveEnd {
    std::uint64_t count = 0;           // of members
    std::uint64_t directoryStart = 0;  // in the file
    std::uint64_t directorySize = 0;
    std::uint64_t base = 0;  // what stands before the archive, to be added to its offsets
    std::string comment;
};

// Throws kTruncated, kInvalid (also where two ends are possible) or kMultiVolume.
ArchiveEnd ReadArchiveEnd(InputFile& file);

}  // namespace ql::zip
