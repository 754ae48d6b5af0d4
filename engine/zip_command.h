#pragma once

#include "engine/result.h"
#include "zip/zip_records.h"

namespace ql::zip {

// Does what the record asks for.
Result RunZip(const ZIPCMDSTRUCT& command);

// Adds files that have a result each (DzipFilesProc).
Result RunZipFiles(const ZIPCMDSTRUCT& command, ZIPSOURCE* sources, std::int32_t count);

}  // namespace ql::zip
