#include "values/date_redisplay.h"

DATE_REDISPLAY_OPT g_dateRedisplayOpt = DATE_REDISPLAY_CHANGED;
