#include "text/fields.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/failure.h"
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
    ql::Completes([&] {
        const std::size_t colon = std::min(text.find(L':'), text.size());
        RWWString head(text.substr(0, colon));
        RWWString tail(text.substr(std::min(colon + 1, text.size())));
        name = std::move(head);
        rest = std::move(tail);
    });
}

bool StrToBool(const RWWString& text, bool defaultValue) {
    for (const TruthWord& row : kTruthWords) {
        if (ql::EqualIgnoringCase(text, row.word)) return row.value;
    }
    return defaultValue;
}
