#pragma once

#include "platform/export.h"

// When dates in answers are shown again for the user to verify.
enum DATE_REDISPLAY_OPT : int {
    DATE_REDISPLAY_ALWAYS = 0,
    DATE_REDISPLAY_CHANGED = 1,
    DATE_REDISPLAY_NEVER = 2,
};

// What InitializeUtil read; DATE_REDISPLAY_CHANGED until then. Written by InitializeUtil alone, without a
// lock.
extern QL_API DATE_REDISPLAY_OPT g_dateRedisplayOpt;

// The library's start: reads the preference "Verify Dates" of "Answer Entry" into g_dateRedisplayOpt
// ("Always" and "Never" in any case; any other text, or none, is CHANGED) and seeds the C library's rand()
// with the time. Called once, after TlsmInitialize and before CQlsSettings::Initialize. Always true.
QL_API bool InitializeUtil();

// Its counterpart at the end; has nothing to release today.
QL_API void UninitializeUtil();
