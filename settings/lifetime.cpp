#include "settings/lifetime.h"

#include <cstdlib>
#include <ctime>

#include "settings/preference_keys.h"
#include "settings/preferences.h"
#include "text/characters.h"

namespace {

DATE_REDISPLAY_OPT DateRedisplay(const RWWString& text) {
    if (ql::EqualIgnoringCase(text, L"Always")) return DATE_REDISPLAY_ALWAYS;
    if (ql::EqualIgnoringCase(text, L"Never")) return DATE_REDISPLAY_NEVER;
    return DATE_REDISPLAY_CHANGED;
}

}  // namespace

bool InitializeUtil() {
    g_dateRedisplayOpt = DateRedisplay(GetQLRegString(QLIS_ANSWER_ENTRY, QLIE_VERIFY_DATES, nullptr));
    std::srand(static_cast<unsigned>(std::time(nullptr)));
    return true;
}

void UninitializeUtil() {}
