#pragma once

#include "names/file_name.h"
#include "platform/export.h"

// Copies a file to its first-level backup before it is overwritten, and the former first-level backup to the
// second level: Letter.docx -> Letter.~docx1 -> Letter.~docx2, each beside it. The file itself is not
// touched. On failure false, with a text for the user in `message` (at most `messageLength` units with its
// closing zero, cut if need be; none when it is null) and the reason as the system's last error of the
// thread. A backup whose copy breaks off, on a full disk say, is removed; the other one stays whole. Should
// the process be killed meanwhile, the backup that was being written is cut off. Letter without an extension
// has the backups Letter.~1 and Letter.~2. Backups take the file's attributes over; a read-only backup is not
// replaced, a hidden one is, and is shown if that fails. Any thread.
QL_API bool BackupFile(const QLFileName& name, wchar_t* message, int messageLength);
