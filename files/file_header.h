#pragma once

#include "platform/export.h"

class RWFile;
class RWvistream;
class RWvostream;

// The 128 bytes at the start of a file of the product's own, written and read as they are. Their layout
// belongs to the programs that use them.
struct FILE_HEADER {  // NOLINT(readability-identifier-naming): the name is settled
    // As the program laid them out.
    unsigned char bytes[128];
};
static_assert(sizeof(FILE_HEADER) == 128);

// At the current position, as a whole; false when that fails. A null record is not read.
QL_API bool WriteHeader(RWFile& file, const FILE_HEADER& header);
QL_API bool WriteHeader(RWvostream& stream, const FILE_HEADER& header);
QL_API bool ReadHeader(RWFile& file, FILE_HEADER* header);
QL_API bool ReadHeader(RWvistream& stream, FILE_HEADER* header);
