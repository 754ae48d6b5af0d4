#include "settings/preference_keys.h"

#define QL_DEFINE_KEY(name, text) const wchar_t name[] = text;
QL_PREFERENCE_SECTIONS(QL_DEFINE_KEY)
QL_PREFERENCE_ENTRIES(QL_DEFINE_KEY)
