#pragma once
#pragma GCC system_header

// The C library's times with the names that its 32-bit Windows form has for those of 64 bits.

#include_next <time.h>

using __time64_t = long long;

inline __time64_t _time64(__time64_t* out) {
    const __time64_t now = time(nullptr);
    if (out) *out = now;
    return now;
}

inline __time64_t _mktime64(tm* fields) {
    return mktime(fields);
}

inline tm* _localtime64(const __time64_t* seconds) {
    const time_t value = *seconds;
    return localtime(&value);
}
