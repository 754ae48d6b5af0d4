#include "prefs/interview_globals.h"

#include <algorithm>
#include <cwchar>
#include <limits>

#include "settings/preference_keys.h"
#include "settings/preferences.h"
#include "settings/settings_store.h"
#include "text/characters.h"
#include "values/date.h"

namespace {

constexpr int kDefaultCountry = 1;
constexpr const wchar_t* kDefaultCountryText = L"1";

struct FormatRow {
    Unanswered::Format format;
    const wchar_t* text;
};

constexpr FormatRow kFormats[] = {
    {Unanswered::VariableStarred, QLIE_UNANSWERED_FORMAT_VARIABLE},
    {Unanswered::VariableBracketed, QLIE_UNANSWERED_FORMAT_VARIABLE_BRACKET},
    {Unanswered::Underscores, QLIE_UNANSWERED_FORMAT_UNDERSCORE},
    {Unanswered::Asterisks, QLIE_UNANSWERED_FORMAT_ASTERISK},
    {Unanswered::Nothing, QLIE_UNANSWERED_FORMAT_NOTHING},
};

// Null for an unknown text.
const FormatRow* RowOf(std::wstring_view text) {
    const auto row = std::find_if(std::begin(kFormats), std::end(kFormats),
                                  [&](const FormatRow& r) { return ql::EqualIgnoringCase(r.text, text); });
    return row == std::end(kFormats) ? nullptr : row;
}

const wchar_t* TextOf(Unanswered::Format format) {
    if (format == Unanswered::VariableStarred) return L"";
    const auto row = std::find_if(std::begin(kFormats), std::end(kFormats),
                                  [&](const FormatRow& r) { return r.format == format; });
    return row == std::end(kFormats) ? L"" : row->text;
}

}  // namespace

bool CQlGlobals::IsMonthFirst() {
    const RWWString order = GetQLRegString(QLIS_INTERVIEW, QLIE_DATE_ORDER, QLIE_DATE_ORDER_MDY);
    return !ql::EqualIgnoringCase(order.str(), QLIE_DATE_ORDER_DMY);
}

void CQlGlobals::SetIsMonthFirst(bool isMonthFirst) {
    CQlsSettings::SetThreadRegStrSetting(QLIS_INTERVIEW, QLIE_DATE_ORDER,
                                         isMonthFirst ? QLIE_DATE_ORDER_MDY : QLIE_DATE_ORDER_DMY);
}

int CQlGlobals::GetCountry() {
    constexpr long kLeast = std::numeric_limits<int>::min();
    constexpr long kMost = std::numeric_limits<int>::max();
    const RWWString text = GetQLRegString(QLIS_PROVIDER, QLIE_COUNTRY, kDefaultCountryText);
    const auto country = static_cast<int>(std::clamp(std::wcstol(text.data(), nullptr, 10), kLeast, kMost));
    return country != 0 ? country : kDefaultCountry;
}

Unanswered::Format CQlGlobals::GetUnansValDefFormat() {
    RWWString text;
    CQlsSettings::GetThreadRegStrSetting(QLIS_ASSEMBLY, QLIE_UNANSWERED_FORMAT, &text, L"");
    const FormatRow* const row = RowOf(text.str());
    return row ? row->format : Unanswered::VariableStarred;
}

void CQlGlobals::SetUnansValDefFormat(Unanswered::Format format) {
    CQlsSettings::SetThreadRegStrSetting(QLIS_ASSEMBLY, QLIE_UNANSWERED_FORMAT, TextOf(format));
}

void CQlGlobals::SetUnansValDefFormatFromPrefString(const wchar_t* text) {
    const FormatRow* const row = text ? RowOf(text) : nullptr;
    if (row) SetUnansValDefFormat(row->format);
}

void CQlGlobals::ClearUnansValDefFormat() {
    CQlsSettings::ClearThreadRegSetting(QLIS_ASSEMBLY, QLIE_UNANSWERED_FORMAT);
}

int CQlGlobals::GetMaxWhileCount() noexcept {
    return QLIEDEF_MAX_WHILE_COUNT;
}

int CQlGlobals::GetMaxRecursionDepth() noexcept {
    return std::numeric_limits<int>::max();
}

void CQlGlobals::GetLocalDate(CDate* date) {
    if (date) *date = CDate();
}
