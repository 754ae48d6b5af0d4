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

TEST(Characters, ClassesAndCaseComeFromFixedTables) {
    const std::wstring units(L"aZ\u00e4\u00c4\u0436\u6c341_ \0\xd83d", 11);
    const auto those = [&units](bool (*isOne)(wchar_t)) {
        std::wstring told;
        for (const wchar_t unit : units) told += isOne(unit) ? unit : L'.';
        return told;
    };
    EXPECT_EQ(L"aZ\u00e4\u00c4\u0436\u6c34.....", those(ql::IsLetter));
    EXPECT_EQ(L".Z.\u00c4.......", those(ql::IsUpperLetter));
    EXPECT_EQ(L"a.\u00e4.\u0436......", those(ql::IsLowerLetter));
    std::wstring text(L"i\0\u00df\u00ff\xde00", 5);  // no Turkish i, no double s, half a pair
    ql::MakeUpper(text);
    EXPECT_EQ(text, std::wstring(L"I\0\u00df\u0178\xde00", 5));
    ql::MakeLower(text);
    EXPECT_EQ(text, std::wstring(L"i\0\u00df\u00ff\xde00", 5));
}
