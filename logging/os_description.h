#pragma once

#include "platform/export.h"

// Writes what Windows calls itself, such as "Microsoft Windows 7Ultimate Edition Service Pack 1 (build 7601),
// 64-bit", and a zero; a text that does not fit is cut. Always 1. The buffer, of `size` characters, stays as
// it was when the system does not tell its version; a null buffer or a size of 0 or less is left alone. 256
// characters hold every text.
//
// Kept on purpose: no blank stands between the version and its edition from Windows Vista on, and versions
// after Windows 8 have no name. What the system tells a program may depend on the program's manifest.
QL_API int GetOSDescription(wchar_t* buffer, int size) noexcept;
