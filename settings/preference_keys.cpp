#include "settings/preference_keys.h"

// NOLINTBEGIN(bugprone-macro-parentheses): the names are defined
#define QL_DEFINE_KEY(name, text) const wchar_t name[] = text;
QL_PREFERENCE_SECTIONS(QL_DEFINE_KEY)
QL_PREFERENCE_ENTRIES(QL_DEFINE_KEY, QL_DEFINE_KEY)
QL_PREFERENCE_TEXT_DEFAULTS(QL_DEFINE_KEY)
#undef QL_DEFINE_KEY

#define QL_DEFINE_DEFAULT(name, value) const bool name = value;
QL_PREFERENCE_BOOL_DEFAULTS(QL_DEFINE_DEFAULT)
#undef QL_DEFINE_DEFAULT

#define QL_DEFINE_DEFAULT(name, value) const int name = value;
QL_PREFERENCE_INT_DEFAULTS(QL_DEFINE_DEFAULT)
#undef QL_DEFINE_DEFAULT
// NOLINTEND(bugprone-macro-parentheses)

// The five colours that follow each other through the twenty tiers, and a background for five tiers.
#define QL_FIVE_COLORS L"0,128,0", L"128,0,128", L"192,0,0", L"128,128,0", L"255,128,128"
#define QL_FIVE_TIMES(text) text, text, text, text, text

const wchar_t* const QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_DEFREGSTR[kPreferenceColorTiers] = {
    QL_FIVE_COLORS, QL_FIVE_COLORS, QL_FIVE_COLORS, QL_FIVE_COLORS};
const wchar_t* const QLIE_TEXT_TEMPLATE_COLOR_TIERED_DEFREGSTR[kPreferenceColorTiers] = {
    QL_FIVE_COLORS, QL_FIVE_COLORS, QL_FIVE_COLORS, QL_FIVE_COLORS};
const wchar_t* const QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_B_DEFREGSTR[kPreferenceColorTiers] = {
    QL_FIVE_TIMES(L"255,255,255"), QL_FIVE_TIMES(L"255,255,192"), QL_FIVE_TIMES(L"192,255,255"),
    QL_FIVE_TIMES(L"255,192,255")};
const wchar_t* const QLIE_TEXT_TEMPLATE_COLOR_TIERED_B_DEFREGSTR[kPreferenceColorTiers] = {
    QL_FIVE_TIMES(L"255,255,255"), QL_FIVE_TIMES(L"255,255,255"), QL_FIVE_TIMES(L"255,255,255"),
    QL_FIVE_TIMES(L"255,255,255")};

#undef QL_FIVE_COLORS
#undef QL_FIVE_TIMES
