#pragma once

#include "platform/export.h"

// What the machine, the user and a program file are. Any thread; nothing is remembered but the system's own
// functions.

QL_API bool Is64BitWindows() noexcept;  // false too when a 32-bit process gets no answer
QL_API bool CanWriteToHKLM() noexcept;  // the product's own machine key; false when the key does not exist
QL_API bool IsAdminUser() noexcept;     // whether the caller's token is a member of the Administrators

// Kept on purpose: the signature of an executable is compared as the wide text "PE", which the bytes of a
// standard executable never are, so that the answer for those is 0. Also 0 for what is missing or not
// readable; zeros stand for what lies behind the end of the file.
QL_API int Is32BitExe(const wchar_t* path) noexcept;
