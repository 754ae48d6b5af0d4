#pragma once

#include "platform/export.h"
#include "settings/preference_key_list.h"

// The names of preferences as constants, zero-ended texts: QLIS_... are sections, QLIE_... entries. Pass them to
// the accessors of settings/preferences.h: GetQLRegString(QLIS_ANSWER_ENTRY, QLIE_VERIFY_DATES, nullptr).
#define QL_DECLARE_KEY(name, text) extern QL_API const wchar_t name[];
QL_PREFERENCE_SECTIONS(QL_DECLARE_KEY)
QL_PREFERENCE_ENTRIES(QL_DECLARE_KEY)
#undef QL_DECLARE_KEY
