#pragma once

#include <cstdint>
#include <string>

#include "engine/file_access.h"

namespace ql::zip {

// What the end of an archive tells of its directory.
struct ArchiveEnd {
    std::uint64_t count;           // of members
    std::uint64_t directoryStart;  // in the file
    std::uint64_t directorySize;
    std::uint64_t base;  // what stands before the archive, to be added to its offsets
    std::string comment;
    bool operator==(const ArchiveEnd&) const = default;
};

// Throws kTruncated, kInvalid (also where two ends are possible) or kMultiVolume.
ArchiveEnd ReadArchiveEnd(InputFile& file);

}  // namespace ql::zip
