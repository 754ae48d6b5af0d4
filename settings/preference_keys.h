#pragma once

#include <cstddef>

#include "platform/export.h"
#include "settings/preference_key_list.h"

// The names of preferences as constants, zero-ended texts. Pass them to the accessors of
// settings/preferences.h:
//
//     GetQLRegString(QLIS_ANSWER_ENTRY, QLIE_VERIFY_DATES, nullptr)
//
// QLIS_... are sections. QLIE_... are entries, or, where the name extends an entry's name, mostly the texts
// that the entry takes: QLIE_INSERT_RETURNS is "Insert Returns", QLIE_INSERT_RETURNS_SMART its text "Smart".
// Entries that hold "%d" are numbered: the number must be formatted in. All are immutable and there for the
// life of the process.
// NOLINTBEGIN(bugprone-macro-parentheses): the names are declared
#define QL_DECLARE_KEY(name, text) extern QL_API const wchar_t name[];
QL_PREFERENCE_SECTIONS(QL_DECLARE_KEY)
QL_PREFERENCE_ENTRIES(QL_DECLARE_KEY, QL_DECLARE_KEY)

// Defaults: ..._DEFREGBOOL, ..._DEFREGINT and ..._DEFREGSTR of the entry of the same stem, QLIEDEF_... of
// settings that have no such entry. Colours are "red,green,blue", in the script editor
// "red,green,blue:bold:italic".
QL_PREFERENCE_TEXT_DEFAULTS(QL_DECLARE_KEY)
#undef QL_DECLARE_KEY

#define QL_DECLARE_DEFAULT(name, value) extern QL_API const bool name;
QL_PREFERENCE_BOOL_DEFAULTS(QL_DECLARE_DEFAULT)
#undef QL_DECLARE_DEFAULT

#define QL_DECLARE_DEFAULT(name, value) extern QL_API const int name;
QL_PREFERENCE_INT_DEFAULTS(QL_DECLARE_DEFAULT)
#undef QL_DECLARE_DEFAULT
// NOLINTEND(bugprone-macro-parentheses)

// The default colours of the numbered tiers, element 0 being that of tier 1.
inline constexpr std::size_t kPreferenceColorTiers = 20;
extern QL_API const wchar_t* const QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_DEFREGSTR[kPreferenceColorTiers];
extern QL_API const wchar_t* const QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_B_DEFREGSTR[kPreferenceColorTiers];
extern QL_API const wchar_t* const QLIE_TEXT_TEMPLATE_COLOR_TIERED_DEFREGSTR[kPreferenceColorTiers];
extern QL_API const wchar_t* const QLIE_TEXT_TEMPLATE_COLOR_TIERED_B_DEFREGSTR[kPreferenceColorTiers];
