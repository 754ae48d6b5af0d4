#include <gtest/gtest.h>

#include "text/speed_str.h"
#include "text/token_string.h"

TEST(TokenString, ChangesDelimitersMidwayAndCopiesThem) {
    TokenString text(L"a,b c,d", L",");
    EXPECT_EQ(text.Next(), L"a");
    text.NewDelims(L" \u20ac");
    TokenString copy(text);
    EXPECT_EQ(text.Next(), L",b") << "the former delimiters are none";
    EXPECT_EQ(copy.Next(), L",b");
    text.NewDelims(L",");
    text = copy;
    EXPECT_EQ(text.Next(), L"c,d");
    text.Init();
    EXPECT_EQ(text.Next(), L"a,b");
}

TEST(TokenString, TellsAnEmptyTokenFromTheEndWhereATextIsKept) {
    TokenString text(L" a \"\" \"b", L" ");
    RWWString token = L"kept";
    for (const wchar_t* expected : {L"a", L"", L"b"}) {
        EXPECT_TRUE(text.Next(token)) << "before the end";
        EXPECT_EQ(expected, token);
    }
    EXPECT_FALSE(text.Next(token));
    EXPECT_EQ(L"", token);
}

TEST(TokenString, CountsUnitsAndReadsNoFurtherThanItsText) {
    EXPECT_EQ(L"", TokenString(nullptr, nullptr).Next());
    TokenString text(RWWString(L"a\0b\0\0c", 6), RWWString(L"\0", 1));
    for (const wchar_t* token : {L"a", L"b"}) EXPECT_EQ(token, text.Next());
    text.resize(5);
    EXPECT_TRUE(text.Next().isNull()) << "shortened";
    text.append(L"cd");
    EXPECT_EQ(text.Next(), L"c") << "longer than at construction";
}

TEST(SpeedStr, TakesCountedZerosAndLeavesOutWhatCannotBe) {
    CSpeedStr builder;
    builder.append(L"a\0?", 3);
    builder.append(static_cast<const wchar_t*>(nullptr));
    builder.append(L"x", 0xFFFFFFFF);  // more than there can be
    EXPECT_EQ(builder.ToString(), std::wstring(L"a\0?", 3));
    builder.Clear();
    EXPECT_TRUE(builder.isNull());
}
