#pragma once

namespace ql::zip {

// A character without its case, as the file system compares names: unit by unit, in no language. Characters
// beyond the first 65,536 have no case there.
char32_t WithoutCase(char32_t c);

}  // namespace ql::zip
