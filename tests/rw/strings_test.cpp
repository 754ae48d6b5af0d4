#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <unordered_set>

#include "rw/narrow_string.h"
#include "rw/text_hash.h"
#include "rw/wide_string.h"

using namespace std::string_literals;

namespace {

const wchar_t* const kNoText = nullptr;

}  // namespace

TEST(WideString, TakesANullPointerForTheEmptyText) {
    RWWString text(kNoText);
    EXPECT_TRUE(text.isNull());
    EXPECT_STREQ(L"", text.data());
    EXPECT_TRUE(text == kNoText);

    text = L"x";
    text.append(kNoText).prepend(kNoText) += kNoText;
    EXPECT_EQ(L"x", text + kNoText);
    EXPECT_FALSE(text == kNoText);

    text = kNoText;
    EXPECT_EQ(0u, text.length());
}

TEST(WideString, KeepsZeroUnits) {
    RWWString text(L"a\0b", 3);
    EXPECT_FALSE(text == L"a");
    text += L'\0';
    EXPECT_EQ(L"a\0b\0"s, text.str());
    text.resize(6);
    EXPECT_EQ(L"a\0b\0\0\0"s, text.str());
    EXPECT_EQ(L'\0', text.data()[text.length()]);
}

TEST(WideString, AppendsAndPrependsItself) {
    RWWString text(L"0123456789abcdef");
    text += text;
    EXPECT_EQ(L"0123456789abcdef0123456789abcdef", text);
    text.resize(3);
    text.prepend(text.view().substr(1));
    EXPECT_EQ(L"12012", text);
    text.assign(text.view().substr(3));
    EXPECT_EQ(L"12", text);
}

TEST(WideString, TakesNothingFromANullPointerWithACount) {
    EXPECT_TRUE(RWWString(kNoText, 3).empty());
    EXPECT_TRUE(RWCString(nullptr, 3).empty());
}

TEST(WideString, ReadsAndComparesAsTheStandardTextsDo) {
    const std::wstring standard = L"one two one";
    const std::wstring_view view = standard;
    const RWWString text = view;
    EXPECT_EQ(view, text);
    EXPECT_EQ(standard, text);
    EXPECT_NE(text, view.substr(1));
    EXPECT_LT(text, std::wstring_view(L"one u"));
    EXPECT_GT(text, L"one");
    EXPECT_GT(text, kNoText);
    EXPECT_LT(text, standard + L'!');
    EXPECT_EQ(standard, std::wstring(text.begin(), text.end()));
    EXPECT_EQ(std::hash<std::wstring_view>()(view), std::hash<RWWString>()(text));
    EXPECT_EQ(1u, (std::unordered_set<RWWString>{view, text, standard}).size());

    std::wostringstream out;
    out << text << L'.';
    EXPECT_EQ(L"one two one."s, out.str());
}

TEST(WideString, FindsAndCutsAsTheStandardTextsDo) {
    const std::wstring standard = L"one two one";
    const RWWString text = standard;
    for (std::size_t from = 0; from <= standard.size() + 1; ++from) {
        EXPECT_EQ(standard.find(L"one", from), text.find(L"one", from)) << from;
        EXPECT_EQ(standard.rfind(L"one", from), text.rfind(RWWString(L"one"), from)) << from;
        EXPECT_EQ(standard.find(L'o', from), text.find(L'o', from)) << from;
        EXPECT_EQ(standard.rfind(L'o', from), text.rfind(L'o', from)) << from;
        EXPECT_EQ(from < standard.size() ? standard.substr(from, 3) : L""s, text.substr(from, 3)) << from;
    }
    EXPECT_EQ(0u, text.find(kNoText));
    EXPECT_TRUE(text.starts_with(L"one t"));
    EXPECT_FALSE(text.ends_with(L"two"));
}

TEST(WideString, OrdersByCodeUnit) {
    EXPECT_LT(RWWString(L"B"), RWWString(L"a"));
    EXPECT_LT(RWWString(L"a"), RWWString(L"ab"));
    EXPECT_LT(RWWString(L"\u7fff"), RWWString(L"\u8000"));
    EXPECT_LT(RWWString(), RWWString(L"\0", 1));
}

TEST(NarrowString, TakesANullPointerForTheEmptyText) {
    const char* none = nullptr;
    const RWCString text(none);
    EXPECT_TRUE(text.isNull());
    EXPECT_STREQ("", text.data());
    EXPECT_TRUE(text == none);
    EXPECT_FALSE(RWCString("x") == none);
}

TEST(NarrowString, KeepsZeroBytesAndOrdersByUnsignedByte) {
    EXPECT_EQ(3u, RWCString("a\0b", 3).length());
    EXPECT_FALSE(RWCString("a\0b", 3) == "a");
    EXPECT_LT(RWCString("\x7f"), RWCString("\x80"));
    EXPECT_LT(RWCString("a"), RWCString("a\0", 2));
}

TEST(TextHash, OfPiecesIsThatOfTheWhole) {
    const unsigned whole = ql::TextHash().Add(L"Section<-^->Entry").Value();
    EXPECT_EQ(whole, ql::TextHash().Add(L"Section").Add(L"").Add(L"<-^->").Add(L"Entry").Value());
    EXPECT_NE(whole, ql::TextHash().Add(L"Section<-^->entry").Value());
    EXPECT_NE(ql::TextHash().Add(L"ab").Value(), ql::TextHash().Add(L"ba").Value());
}

TEST(TextHash, IsTheSameForNarrowTextOfTheSameUnits) {
    EXPECT_EQ(ql::TextHash().Add(L"\u00ff").Value(), ql::TextHash().Add("\xff").Value());
}
