#pragma once

#include "platform/export.h"
#include "values/date_redisplay.h"

// The library's start: reads the preference "Verify Dates" of "Answer Entry" into g_dateRedisplayOpt
// ("Always" and "Never" in any case; any other text, or none, is CHANGED) and seeds the C library's rand()
// with the time. Called once, after TlsmInitialize and before CQlsSettings::Initialize. Always true.
QL_API bool InitializeUtil();

// Its counterpart at the end; has nothing to release today.
QL_API void UninitializeUtil();
