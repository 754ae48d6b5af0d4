#include "text/letter_case.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "platform/failure.h"
#include "text/characters.h"
#include "text/unicode.h"

namespace {

constexpr wchar_t kSharpS = 0x00DF;

bool IsSpacedCapitals(std::wstring_view text) {
    return text.size() > 4 && text[1] == L' ' && ql::IsUpperLetter(text[2]) && text[3] == L' ' &&
           ql::IsUpperLetter(text[4]);
}

// The text from its first letter with case on that follows a non-letter; empty where there is none.
std::wstring_view FromWordStart(std::wstring_view text) {
    const auto before = std::adjacent_find(text.begin(), text.end(), [](wchar_t unit, wchar_t next) {
        return !ql::IsLetter(unit) && (ql::IsUpperLetter(next) || ql::IsLowerLetter(next));
    });
    return before == text.end() ? std::wstring_view() : std::wstring_view(before + 1, text.end());
}

// The case of a text whose first letter is the only capital of its first two units.
CaseType CaseByWordStarts(std::wstring_view text) {
    const std::wstring_view second = FromWordStart(text.substr(1));
    if (second.empty() || ql::IsUpperLetter(second.front())) return CASE_TITLE;
    const std::wstring_view third = FromWordStart(second);
    return !third.empty() && ql::IsUpperLetter(third.front()) ? CASE_FIRST_CAPITAL : CASE_SENTENCE;
}

void CapitaliseFirst(std::wstring& text) {
    std::wstring first(1, text.front());
    ql::MakeUpper(first);
    text.front() = first.front();
}

void CapitaliseWords(std::wstring& text) {
    std::wstring capitals = text;
    ql::MakeUpper(capitals);
    text.front() = capitals.front();
    for (std::size_t i = 1; i < text.size(); ++i) {
        // What has a capital and is no letter, such as a circled one, stays.
        const bool startsWord = text[i - 1] != L'\'' && !ql::IsLetter(text[i - 1]) && ql::IsLetter(text[i]);
        if (startsWord) text[i] = capitals[i];
    }
}

std::wstring Capitals(std::wstring_view text) {
    std::wstring capitals;
    for (const wchar_t& unit : text)
        capitals += unit == kSharpS ? std::wstring_view(L"SS") : std::wstring_view(&unit, 1);
    ql::MakeUpper(capitals);
    return capitals;
}

std::wstring Spaced(std::wstring_view text) {
    std::wstring spaced;
    for (const wchar_t unit : text) {
        // Nothing goes between the units of a pair.
        if (!spaced.empty() && !ql::IsLowSurrogate(unit)) spaced += L' ';
        spaced += unit;
    }
    return spaced;
}

std::wstring Changed(std::wstring changed, CaseType type) {
    if (changed.empty()) return changed;
    if (type == CASE_LOWER || type == CASE_SENTENCE || type == CASE_TITLE) ql::MakeLower(changed);
    switch (type) {
        case CASE_SENTENCE:
        case CASE_FIRST_CAPITAL: CapitaliseFirst(changed); break;
        case CASE_TITLE: CapitaliseWords(changed); break;
        case CASE_UPPER: return Capitals(changed);
        case CASE_SPACED_CAPITALS: return Spaced(Capitals(changed));
        default: break;
    }
    return changed;
}

}  // namespace

CaseType GetCase(const RWWString& text) {
    const std::wstring_view units = text;
    if (units.empty()) return CASE_UNKNOWN;
    const bool capitalSecond = units.size() > 1 && ql::IsUpperLetter(units[1]);
    if (ql::IsLowerLetter(units[0])) return capitalSecond ? CASE_UNKNOWN : CASE_LOWER;
    if (!ql::IsUpperLetter(units[0])) return CASE_UNKNOWN;
    if (IsSpacedCapitals(units)) return CASE_SPACED_CAPITALS;
    return capitalSecond ? CASE_UPPER : CaseByWordStarts(units);
}

RWWString ChangeCase(const RWWString& text, CaseType type) {
    return ql::FailureIfThrown({}, [&] { return Changed(text.str(), type); });
}
