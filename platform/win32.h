#pragma once

// The only door to the system's headers: every other file takes them from here, so that the macros they
// bring are tamed in one place.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef UNICODE
#define UNICODE
#endif
#ifndef _UNICODE
#define _UNICODE  // NOLINT(bugprone-reserved-identifier): the system's own name
#endif

#include <windows.h>

#include <shlobj.h>
