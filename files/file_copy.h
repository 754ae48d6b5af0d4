#pragma once

#include "platform/export.h"

// Copies a file byte for byte; the destination comes first. 1 for success and 0 for failure. The destination
// is created or replaced in place, and has the source's three times when `keepTimes` is not 0. `error` is the
// system's code when reading or setting times fails, and stays as it was otherwise; after every failure the
// system's last error of the thread tells the reason, ERROR_INVALID_PARAMETER for a null text and for a file
// copied onto itself.
//
// A destination keeps what it held when either file cannot be opened, the source cannot be read from its
// start or the disk has no room for the copy: room for the size that the source tells is had before the first
// byte is overwritten. A failure later than that (a disk that is taken away, a source that breaks or tells
// less than it holds, a volume that gives out room late even for bytes that a file has: one that is
// compressed or copies on writing) leaves the part that was copied. A destination that was not there is
// removed after any failure but that of setting times. Devices, such as NUL or a printer's port, can be
// either. A file copied onto itself, by whatever name, stays as it is, and the answer is 0. Any thread.
QL_API int MakeFileCopy(const wchar_t* destination, const wchar_t* source, int keepTimes,
                        unsigned long& error);
