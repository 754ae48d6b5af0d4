#pragma once

#include "platform/export.h"

// Copies a file byte for byte; the destination comes first. 1 for success and 0 for failure. The destination
// is created or replaced, and has the source's three times when `keepTimes` is not 0. `error` is the system's
// code when reading or setting times fails, and stays as it was otherwise. A failure while copying leaves the
// destination incomplete. A file copied onto itself, by whatever name, stays as it is, and the answer is 0.
// Any thread.
QL_API int MakeFileCopy(const wchar_t* destination, const wchar_t* source, int keepTimes,
                        unsigned long& error);
