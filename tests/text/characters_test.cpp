#include <gtest/gtest.h>

#include "text/blanks.h"
#include "text/characters.h"
#include "text/decimal.h"
#include "text/paths.h"

TEST(Characters, CompareIgnoringCaseByUpperCasedUnits) {
    const std::tuple<std::wstring, std::wstring, int> cases[] = {
        {L"", L"a", -1},
        {L"Letter", L"lETTER", 0},
        {L"a_", L"aB", 1},  // the upper-cased B comes before the underscore, the small one would not
        {L"\u00e4\u0436", L"\u00c4\u0416", 0},
        {std::wstring(L"a\0b", 3), std::wstring(L"A\0C", 3), -1},
        {L"\xd83d\xde00", L"\xd83d\xde01", -1},
        {L"\u00df", L"SS", 1}};  // one unit stays one unit
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

TEST(Paths, AreToldByTheirSeparators) {
    for (const wchar_t* path : {L"\\", L"/a", L"//"}) EXPECT_TRUE(ql::StartsWithSeparator(path)) << path;
    for (const wchar_t* path : {L"", L"a/", L":"}) EXPECT_FALSE(ql::StartsWithSeparator(path)) << path;
    for (const wchar_t* path : {L"\\/", L"//a"}) EXPECT_TRUE(ql::StartsWithTwoSeparators(path)) << path;
    for (const wchar_t* path : {L"/", L"/a", L"a/"}) EXPECT_FALSE(ql::StartsWithTwoSeparators(path)) << path;
    for (const wchar_t* path : {L"/", L"a\\"}) EXPECT_TRUE(ql::EndsWithSeparator(path)) << path;
    for (const wchar_t* path : {L"", L"/a"}) EXPECT_FALSE(ql::EndsWithSeparator(path)) << path;
    std::wstring folder = L"a/\\\\";
    for (const wchar_t* cut : {L"a/\\", L"a/", L"a/"})
        EXPECT_EQ(cut, (ql::CutTrailingBackslash(folder), folder));
}

TEST(Blanks, AndQuotesSurroundATextAtEitherEnd) {
    EXPECT_EQ(L"a b\t", ql::WithoutBlanks(L"  a b\t "));
    for (const wchar_t* text : {L"\"a", L"a\"", L"\"a\""}) EXPECT_EQ(L"a", ql::WithoutQuotes(text)) << text;
}

TEST(Decimal, IsReadAsFarAsItGoes) {
    const std::tuple<const wchar_t*, double, std::size_t> cases[] = {
        {L"-12.50e-1x", -1.25, 9}, {L"01.5.", 1.5, 4}, {L"8478990E22", 8478990e22, 10}, {L"2e+3", 2000, 4}};
    for (const auto& [text, value, length] : cases) {
        const Decimal read = ReadDecimal(text);
        EXPECT_EQ(std::pair(value, length), std::pair(read.value, read.length)) << text;
    }
}
