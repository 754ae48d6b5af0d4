#include <string_view>

#include "settings/preference_keys.h"
#include "text/letter_case.h"
#include "tools/qlutil/command.h"

namespace {

struct Key {
    const wchar_t* constant;
    const wchar_t* text;
    bool derived;
};

#define QL_WIDE(text) L##text
#define QL_KNOWN_KEY(name, text) {QL_WIDE(#name), text, false},
#define QL_DERIVED_KEY(name, text) {QL_WIDE(#name), text, true},
// clang-format off: a macro's rows are no expression
constexpr Key kKeys[] = {QL_PREFERENCE_SECTIONS(QL_KNOWN_KEY)
                             QL_PREFERENCE_ENTRIES(QL_KNOWN_KEY, QL_DERIVED_KEY)};
// clang-format on
#undef QL_DERIVED_KEY
#undef QL_KNOWN_KEY
#undef QL_WIDE

bool Holds(const wchar_t* text, const RWWString& upperPattern) {
    return ChangeCase(text, CASE_UPPER).view().find(upperPattern) != std::wstring_view::npos;
}

Answer Keys(const Arguments& arguments) {
    const std::wstring_view pattern = arguments.count() == 0 ? std::wstring_view() : arguments[0];
    const RWWString upper = ChangeCase(RWWString(pattern), CASE_UPPER);
    List rows;
    for (const Key& key : kKeys) {
        if (!Holds(key.constant, upper) && !Holds(key.text, upper)) continue;
        rows.push_back(Record{{L"constant", key.constant}, {L"text", key.text}, {L"derived", key.derived}});
    }
    if (!rows.empty()) return rows;
    return Answer(Node(std::move(rows)), L"no key holds \"" + std::wstring(pattern) + L'"');
}

constexpr Command kCommands[] = {
    {L"keys",
     L"[PATTERN]",
     L"The constants for preferences' sections, entries and texts, those that hold PATTERN in any case;\n"
     L"    derived: the text was made from the constant's name.",
     {},
     0,
     1,
     Keys},
};

}  // namespace

std::span<const Command> KeyCommands() {
    return kCommands;
}
