#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "text/token_string.h"

namespace {

// Everything up to the first empty token.
std::vector<std::wstring> TokensOf(TokenString text) {
    std::vector<std::wstring> tokens;
    for (RWWString token = text.Next(); !token.isNull(); token = text.Next()) tokens.push_back(token.str());
    return tokens;
}

TEST(TokenString, Splits) {
    const struct {
        const wchar_t *text, *delimiters;
        std::vector<std::wstring> tokens;
    } cases[] = {
        {nullptr, nullptr, {}},
        {L" , ", L" ,", {}},
        {L"  a,, b ", L" ,", {L"a", L"b"}},
        {L"a b", L"", {L"a b"}},
        {L"\"abc", L" ", {L"abc"}},
        {L"x \"a b\"\"c\"d", L" ", {L"x", L"a b", L"c", L"d"}},
        {L"a\"b c\"", L" ", {L"a\"b", L"c\""}},  // quotes inside a token
        {L"a\"b", L"\"", {L"a", L"b"}},          // a quote that is a delimiter opens nothing
        {L"a \"\" b", L" ", {L"a"}},             // the empty token looks like the end
        {L"end \"", L" ", {L"end"}},
        {L"a\u20acb\u00e4c", L"\u20ac\u00e4", {L"a", L"b", L"c"}},
    };
    for (const auto& c : cases) EXPECT_EQ(TokensOf(TokenString(c.text, c.delimiters)), c.tokens) << c.text;
}

TEST(TokenString, StaysAtTheEnd) {
    TokenString text(RWWString(L"a \""), RWWString(L" "));
    EXPECT_EQ(text.Next(), L"a");
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(text.Next().isNull());
    text.Init();
    EXPECT_EQ(text.Next(), L"a");
}

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
}

TEST(TokenString, CountsUnitsAndReadsNoFurtherThanItsText) {
    const RWWString zeros(L"a\0b\0\0c", 6);
    TokenString text(zeros, RWWString(L"\0", 1));
    EXPECT_EQ(text.Next(), L"a");
    EXPECT_EQ(text.Next(), L"b");
    text.resize(5);
    EXPECT_TRUE(text.Next().isNull()) << "shortened";
    text.append(L"cd");
    EXPECT_EQ(text.Next(), L"c") << "longer than at construction";
}

}  // namespace
