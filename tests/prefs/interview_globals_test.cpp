#include "prefs/interview_globals.h"

#include <gtest/gtest.h>

#include <thread>

#include "settings/settings_store.h"
#include "tests/support/private_registry.h"
#include "values/date.h"

namespace {

constexpr const wchar_t* kSection = L"Assembly";
constexpr const wchar_t* kEntry = L"Unanswered Variable";

using InterviewGlobals = SettingsTest;
using Country = std::pair<const wchar_t*, int>;
using Formats = std::pair<const wchar_t*, Unanswered::Format>;
using enum Unanswered::Format;

// The next readings see what the registry holds now.
void PutInRegistry(const wchar_t* section, const wchar_t* entry, const wchar_t* text) {
    PrivateRegistry::Put(kUser, section, entry, text);
    CQlsSettings::ClearThreadRegSetting(section, entry);
}

TEST_F(InterviewGlobals, OnlyDayMonthYearIsNotMonthFirst) {
    EXPECT_TRUE(CQlGlobals::IsMonthFirst());
    for (const wchar_t* text : {L"", L"Month Day Year", L"Day Month Years", L"none"}) {
        PutInRegistry(L"Interview", L"Date Detection", text);
        EXPECT_TRUE(CQlGlobals::IsMonthFirst()) << text;
    }
    PutInRegistry(L"Interview", L"Date Detection", L"day MONTH year");
    EXPECT_FALSE(CQlGlobals::IsMonthFirst());
}

TEST_F(InterviewGlobals, CountryIsOneUnlessTheTextBeginsWithAnotherNumber) {
    EXPECT_EQ(1, CQlGlobals::GetCountry());
    for (const auto& [text, country] : {Country(L"44", 44),
                                        {L"0", 1},
                                        {L"", 1},
                                        {L"x44", 1},
                                        {L" 49 Germany", 49},
                                        {L"-7", -7},
                                        {L"99999999999", 2147483647}}) {
        PutInRegistry(L"Provider", L"Country", text);
        EXPECT_EQ(country, CQlGlobals::GetCountry()) << text;
    }
}

TEST_F(InterviewGlobals, UnansweredFormatIsReadFromItsText) {
    EXPECT_EQ(Unanswered::VariableStarred, CQlGlobals::GetUnansValDefFormat());
    const Formats kCases[] = {{L"nothing", Nothing},
                              {L"ASTERISKS", Asterisks},
                              {L"*** Variable ***", VariableStarred},
                              {L"Underscores", Underscores},
                              {L"[variable]", VariableBracketed},
                              {L"", VariableStarred},
                              {L"Nothing at all", VariableStarred}};
    for (const auto& [text, format] : kCases) {
        PutInRegistry(kSection, kEntry, text);
        EXPECT_EQ(format, CQlGlobals::GetUnansValDefFormat()) << text;
    }
}

TEST_F(InterviewGlobals, UnansweredFormatIsWrittenToTheStoreAlone) {
    PutInRegistry(kSection, kEntry, L"Nothing");
    const Formats kCases[] = {{L"Nothing", Nothing},
                              {L"Asterisks", Asterisks},
                              {L"", VariableStarred},
                              {L"Underscores", Underscores},
                              {L"[Variable]", VariableBracketed},
                              {L"", static_cast<Unanswered::Format>(0)},
                              {L"", static_cast<Unanswered::Format>(6)}};
    for (const auto& [text, format] : kCases) {
        CQlGlobals::SetUnansValDefFormat(format);
        EXPECT_EQ(RWWString(text), ThreadText(kSection, kEntry)) << format;
    }
    CQlGlobals::ClearUnansValDefFormat();
    EXPECT_EQ(Unanswered::Nothing, CQlGlobals::GetUnansValDefFormat()) << "the registry's";
}

TEST_F(InterviewGlobals, UnansweredFormatIsSetByThePreferencesText) {
    const Formats kCases[] = {{L"underscores", Underscores},
                              {L"", Underscores},
                              {nullptr, Underscores},
                              {L"unknown", Underscores},
                              {L"[VARIABLE]", VariableBracketed},
                              {L"Asterisks", Asterisks},
                              {L"Nothing", Nothing},
                              {L"*** variable ***", VariableStarred}};
    for (const auto& [text, format] : kCases) {
        CQlGlobals::SetUnansValDefFormatFromPrefString(text);
        EXPECT_EQ(format, CQlGlobals::GetUnansValDefFormat()) << text;
    }
}

TEST_F(InterviewGlobals, AThreadsOwnStoreHidesItsValuesFromOthers) {
    ASSERT_TRUE(CQlsSettings::AttachThreadSettings(CQlsSettings::CreateThreadSettings()));
    CQlGlobals::SetIsMonthFirst(false);
    CQlGlobals::SetUnansValDefFormat(Unanswered::Underscores);
    EXPECT_FALSE(CQlGlobals::IsMonthFirst());
    std::thread([] {
        EXPECT_TRUE(CQlGlobals::IsMonthFirst());
        EXPECT_EQ(Unanswered::VariableStarred, CQlGlobals::GetUnansValDefFormat());
    }).join();
    CQlGlobals::SetIsMonthFirst(true);
    EXPECT_TRUE(CQlGlobals::IsMonthFirst());
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
