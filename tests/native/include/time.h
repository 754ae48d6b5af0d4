#pragma once
#pragma GCC system_header

// The C library's times with the names that its 32-bit Windows form has for those of 64 bits.

#include_next <time.h>

using __time64_t = time_t;
#define _time64 time
#define _mktime64 mktime
#define _localtime64 localtime
