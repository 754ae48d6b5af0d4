#pragma once

#include "engine/result.h"
#include "zip/zip_records.h"

namespace ql::zip {

// What the unzip engine does for a record.
Result RunUnzip(UNZIPCMDSTRUCT& command);

// The same, telling of every member that it concerns (DunzipEachProc).
Result RunUnzipEach(UNZIPCMDSTRUCT& command, ZipMemberProc each, void* userData);

}  // namespace ql::zip
