#include <gtest/gtest.h>

#include "text/characters.h"

TEST(Characters, CompareIgnoringCaseByUpperCasedUnits) {
    const std::tuple<std::wstring, std::wstring, int> cases[] = {
        {L"", L"a", -1},
        {L"Letter", L"lETTER", 0},
        {L"a_", L"aB", 1},  // the upper-cased B comes before the underscore, the small one would not
        {L"\u00e4\u0436", L"\u00c4\u0416", 0},
        {std::wstring(L"a\0b", 3), std::wstring(L"A\0C", 3), -1},
        {L"\xd83d\xde00", L"\xd83d\xde01", -1},
        {L"\u00df", L"SS", 1},  // one unit stays one unit
    };
    for (const auto& [a, b, order] : cases) {
        const auto sign = [](int of) { return (of > 0) - (of < 0); };
        EXPECT_EQ(sign(ql::CompareIgnoringCase(a, b)), order) << testing::PrintToString(a);
        EXPECT_EQ(sign(ql::CompareIgnoringCase(b, a)), -order) << testing::PrintToString(a);
        EXPECT_EQ(ql::EqualIgnoringCase(a, b), order == 0) << testing::PrintToString(a);
    }
    EXPECT_TRUE(ql::StartsWithIgnoringCase(L"\u00c4pfel", L"\u00e4P"));
    EXPECT_TRUE(ql::StartsWithIgnoringCase(L"ab", L"AB"));
    EXPECT_FALSE(ql::StartsWithIgnoringCase(L"a", L"ab"));
}
