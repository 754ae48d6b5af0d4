#include "prefs/interview_globals.h"

#include <gtest/gtest.h>

#include <tuple>

#include "settings/settings_store.h"
#include "tests/support/private_registry.h"
#include "values/date.h"

namespace {

constexpr const wchar_t* kSection = L"Assembly";
constexpr const wchar_t* kEntry = L"Unanswered Variable";

using InterviewGlobals = SettingsTest;
using enum Unanswered::Format;

// The next readings see what the registry holds now.
void PutInRegistry(const wchar_t* section, const wchar_t* entry, const wchar_t* text) {
    PrivateRegistry::Put(kUser, section, entry, text);
    CQlsSettings::ClearThreadRegSetting(section, entry);
}

TEST_F(InterviewGlobals, OnlyDayMonthYearIsNotMonthFirstAndCountryIsOneUnlessItsTextBeginsWithAnotherNumber) {
    EXPECT_TRUE(CQlGlobals::IsMonthFirst());
    for (const auto& [text, isFirst] : {std::pair(L"Day Month Years", true), {L"day MONTH year", false}}) {
        PutInRegistry(L"Interview", L"Date Detection", text);
        EXPECT_EQ(isFirst, CQlGlobals::IsMonthFirst()) << text;
    }
    for (const bool isFirst : {true, false}) {
        CQlGlobals::SetIsMonthFirst(isFirst);
        EXPECT_EQ(isFirst, CQlGlobals::IsMonthFirst());
    }
    EXPECT_EQ(L"day MONTH year", GetQLRegStringEx(L"Interview", L"Date Detection", false)) << "the thread's";
    EXPECT_EQ(1, CQlGlobals::GetCountry());
    for (const auto& [text, country] :
         {std::pair(L" 49 Germany", 49), {L"0", 1}, {L"x44", 1}, {L"-7", -7}, {L"99999999999", 2147483647}}) {
        PutInRegistry(L"Provider", L"Country", text);
        EXPECT_EQ(country, CQlGlobals::GetCountry()) << text;
    }
}

TEST_F(InterviewGlobals, UnansweredFormatIsReadFromItsTextAndKeptByAnyOther) {
    const std::tuple<const wchar_t*, Unanswered::Format, const wchar_t*> kCases[] = {
        {L"underscores", Underscores, L"Underscores"},
        {L"ASTERISKS", Asterisks, L"Asterisks"},
        {L"Nothing", Nothing, L"Nothing"},
        {L"*** variable ***", VariableStarred, L""},
        {L"[VARIABLE]", VariableBracketed, L"[Variable]"}};
    Unanswered::Format former = VariableStarred;
    for (const auto& [text, format, written] : kCases) {
        for (const wchar_t* other : {L"", static_cast<const wchar_t*>(nullptr), L"Nothing at all"}) {
            CQlGlobals::SetUnansValDefFormatFromPrefString(other);
            EXPECT_EQ(former, CQlGlobals::GetUnansValDefFormat()) << other;
        }
        CQlGlobals::SetUnansValDefFormatFromPrefString(text);
        EXPECT_EQ(written, ThreadText(kSection, kEntry));
        PutInRegistry(kSection, kEntry, text);
        EXPECT_EQ(format, CQlGlobals::GetUnansValDefFormat()) << text;
        former = format;
    }
    for (const int none : {0, 6}) {
        CQlGlobals::SetUnansValDefFormat(static_cast<Unanswered::Format>(none));
        EXPECT_EQ(L"", ThreadText(kSection, kEntry)) << none;
    }
    CQlGlobals::ClearUnansValDefFormat();
    EXPECT_EQ(VariableBracketed, CQlGlobals::GetUnansValDefFormat()) << "the registry's";
}

TEST(InterviewGlobalsWithoutStores, AreTheDefaults) {
    const PrivateRegistry registry;
    CQlGlobals::SetIsMonthFirst(false);
    CQlGlobals::SetUnansValDefFormat(Unanswered::Nothing);
    EXPECT_TRUE(CQlGlobals::IsMonthFirst());
    EXPECT_EQ(Unanswered::VariableStarred, CQlGlobals::GetUnansValDefFormat());
    EXPECT_EQ(2147483647, CQlGlobals::GetMaxWhileCount());
    EXPECT_EQ(2147483647, CQlGlobals::GetMaxRecursionDepth());
    CDate before, date(0UL);
    CQlGlobals::GetLocalDate(&date);
    EXPECT_TRUE(before <= date);
    EXPECT_TRUE(date <= CDate());
    CQlGlobals::GetLocalDate(nullptr);
}

}  // namespace
