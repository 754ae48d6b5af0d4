#pragma once

#include "engine/result.h"
#include "zip/zip_records.h"

namespace ql::zip {

// Does what the record asks for.
Result RunZip(const ZIPCMDSTRUCT& command);

}  // namespace ql::zip
