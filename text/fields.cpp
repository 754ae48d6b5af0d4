#include "text/fields.h"

#include <string_view>
#include <utility>

#include "text/characters.h"

constexpr wchar_t g_trueStr[] = L"True";
constexpr wchar_t g_falseStr[] = L"False";

namespace {

struct TruthWord {
    std::wstring_view word;
    bool value;
};

constexpr TruthWord kTruthWords[] = {{g_trueStr, true},   {L"yes", true}, {L"on", true},
                                     {g_falseStr, false}, {L"no", false}, {L"off", false}};

}  // namespace

void SplitField(ql::TextView text, RWWString& name, RWWString& rest) {
    RWWString head(text);
    RWWString tail;
    if (const std::size_t colon = head.view().find(L':'); colon != RWWString::npos) {
        tail.assign(head.view().substr(colon + 1));
        head.resize(colon);
    }
    name = std::move(head);
    rest = std::move(tail);
}

bool StrToBool(const RWWString& text, bool defaultValue) {
    for (const TruthWord& row : kTruthWords) {
        if (ql::EqualIgnoringCase(text, row.word)) return row.value;
    }
    return defaultValue;
}
