#pragma once

#include "platform/export.h"

// When dates in answers are shown again for the user to verify.
enum DATE_REDISPLAY_OPT : int {
    DATE_REDISPLAY_ALWAYS = 0,
    DATE_REDISPLAY_CHANGED = 1,
    DATE_REDISPLAY_NEVER = 2,
};

// What InitializeUtil (settings/lifetime.h) read; DATE_REDISPLAY_CHANGED until then. Written by it alone,
// without a lock.
extern QL_API DATE_REDISPLAY_OPT g_dateRedisplayOpt;
