#include <gtest/gtest.h>

#include <string>

#include "text/characters.h"

namespace {

TEST(Characters, CompareIgnoringCaseByUpperCasedUnits) {
    const struct {
        std::wstring a, b;
        int order;
    } cases[] = {
        {L"", L"a", -1},
        {L"Letter", L"lETTER", 0},
        {L"a_", L"aB", 1},  // the upper-cased B comes before the underscore, the small one would not
        {L"\u00e4\u0436", L"\u00c4\u0416", 0},
        {std::wstring(L"a\0b", 3), std::wstring(L"A\0C", 3), -1},
        {L"\xd83d\xde00", L"\xd83d\xde01", -1},
        {L"\xde00", L"\xde00", 0},  // half a pair
        {L"\u00df", L"SS", 1},      // one unit stays one unit
    };
    for (const auto& c : cases) {
        const auto sign = [](int order) { return (order > 0) - (order < 0); };
        EXPECT_EQ(sign(ql::CompareIgnoringCase(c.a, c.b)), c.order) << testing::PrintToString(c.a);
        EXPECT_EQ(sign(ql::CompareIgnoringCase(c.b, c.a)), -c.order) << testing::PrintToString(c.a);
        EXPECT_EQ(ql::EqualIgnoringCase(c.a, c.b), c.order == 0) << testing::PrintToString(c.a);
    }
    EXPECT_TRUE(ql::StartsWithIgnoringCase(L"\u00c4pfel", L"\u00e4P"));
    EXPECT_FALSE(ql::StartsWithIgnoringCase(L"a", L"ab"));
}

TEST(Characters, ClassesAndCaseComeFromFixedTables) {
    for (const wchar_t letter : {L'a', L'Z', L'\u00e4', L'\u0436', L'\u6c34'})
        EXPECT_TRUE(ql::IsLetter(letter));
    for (const wchar_t other : {L'1', L'_', L' ', L'\0', L'\xd83d'}) EXPECT_FALSE(ql::IsLetter(other));
    EXPECT_TRUE(ql::IsUpperLetter(L'\u00c4'));
    EXPECT_FALSE(ql::IsLowerLetter(L'\u00c4'));
    EXPECT_TRUE(ql::IsLowerLetter(L'\u00e4'));
    EXPECT_FALSE(ql::IsUpperLetter(L'\u00e4'));
    std::wstring text(L"i\0\u00df\u00ff\xde00", 5);  // no Turkish i, no double s, half a pair
    ql::MakeUpper(text);
    EXPECT_EQ(text, std::wstring(L"I\0\u00df\u0178\xde00", 5));
    ql::MakeLower(text);
    EXPECT_EQ(text, std::wstring(L"i\0\u00df\u00ff\xde00", 5));
}

}  // namespace
