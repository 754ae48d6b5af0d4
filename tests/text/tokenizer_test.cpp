#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "text/token_string.h"

namespace {

TEST(TokenString, SplitsAndStaysAtTheEnd) {
    const struct {
        const wchar_t *text, *delimiters;
        std::vector<std::wstring> tokens;
    } cases[] = {
        {nullptr, nullptr, {L""}},
        {L" , ", L" ,", {L""}},
        {L"a b", L"", {L"a b"}},
        {L"x \"a b\"\"c\"d", L" ", {L"x", L"a b", L"c", L"d"}},
        {L"a\"b c\"", L" ", {L"a\"b", L"c\""}},  // quotes inside a token
        {L"a\"b", L"\"", {L"a", L"b"}},          // a quote that is a delimiter opens nothing
        {L"a \"\" b", L" ", {L"a", L"", L"b"}},  // the empty token looks like the end
        {L"end \"", L" ", {L"end", L"", L""}},
    };
    for (const auto& [text, delimiters, tokens] : cases) {
        TokenString split(text, delimiters);
        for (int times = 0; times < 2; ++times, split.Init())
            for (const std::wstring& token : tokens) EXPECT_EQ(token, split.Next()) << text;
    }
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
