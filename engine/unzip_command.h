#pragma once

#include "engine/result.h"
#include "zip/zip_records.h"

namespace ql::zip {

// Does what the record asks for, and answers in its `index`, `returnCount`, `zInfo` and buffers.
Result RunUnzip(UNZIPCMDSTRUCT& command);

}  // namespace ql::zip
