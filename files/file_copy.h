#pragma once

#include "platform/export.h"

// Copies a file byte for byte; the destination comes first. 1 for success and 0 for failure. The destination is
// created or replaced, and has the source's three times when `keepTimes` is not 0. `error` is the system's code when
// reading or setting times fails, and stays as it was otherwise.
//
// A destination keeps what it held when either file cannot be opened, the source cannot be read or the disk has no
// room for the copy; a failure later than that leaves the part that was copied. A file copied onto itself, by
// whatever name, stays as it is, and the answer is 0. Any thread.
QL_API int MakeFileCopy(const wchar_t* destination, const wchar_t* source, int keepTimes,
                        unsigned long& error);
