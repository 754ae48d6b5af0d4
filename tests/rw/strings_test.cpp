#include <gtest/gtest.h>

#include <string>

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
