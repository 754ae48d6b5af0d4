#pragma once

#include <memory>
#include <string>

#include "engine/archive.h"
#include "engine/windows_files.h"

namespace ql::zip {

// The directory of an archive that is open. The directories of the last few archives are kept between calls,
// a bounded amount of them, and count only while size and times of the file are what they were; a file that
// had changed less than two seconds before could have changed again within the same tick of its times, so its
// directory's bytes are compared. Nothing is kept of an archive that fails, no file is held open, and what is
// not used for ten seconds goes with the next call. Safe on any thread; nobody waits while another reads.
// Throws as reading does.
std::shared_ptr<const Archive> DirectoryOf(WindowsInput& file, const std::wstring& path);

// Gives back the memory of a directory too large to be kept beyond a walk.
void WalkEnded(const std::shared_ptr<const Archive>& archive);

}  // namespace ql::zip
