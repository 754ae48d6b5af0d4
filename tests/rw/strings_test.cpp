#include <gtest/gtest.h>

#include <sstream>
#include <unordered_set>

#include "rw/narrow_string.h"
#include "rw/wide_string.h"

using namespace std::string_literals;

TEST(Strings, TakeANullPointerForTheEmptyText) {
    const wchar_t* const kNoText = nullptr;
    const char* const kNoBytes = nullptr;
    RWWString text(kNoText);
    EXPECT_STREQ(L"", text.data());
    EXPECT_TRUE(text == kNoText);
    EXPECT_EQ(0u, text.find(kNoText));
    EXPECT_EQ(0u, RWWString(kNoText, 3).length());

    text = L"x";
    text.append(kNoText).prepend(kNoText) += kNoText;
    EXPECT_EQ(L"x", text + kNoText);
    EXPECT_GT(text, kNoText);
    text = kNoText;
    EXPECT_TRUE(text.empty());

    EXPECT_STREQ("", RWCString(kNoBytes).data());
    EXPECT_TRUE(RWCString(kNoBytes, 3).isNull());
    EXPECT_FALSE(RWCString("x") == kNoBytes);
    EXPECT_STREQ("x", RWCString("x").c_str());
}

TEST(WideString, DoesWhatTheStandardTextsDo) {
    const std::wstring texts[] = {L"",      L"\0"s, L"\0\0"s, L"B",      L"a",           L"a\0b"s,
                                  L"one t", L"two", L"one",   L"\u7fff", L"one two one", L"\u8000"};
    for (const std::wstring& a : texts) {
        for (const std::wstring& b : texts) {
            SCOPED_TRACE(testing::PrintToString(a) + " and " + testing::PrintToString(b));
            const std::wstring_view view = b;
            const RWWString text = a, other = view;
            EXPECT_EQ(a <=> b, text <=> other);
            EXPECT_EQ(a <=> b, text <=> b);
            EXPECT_EQ(a <=> b, text <=> view);
            EXPECT_EQ(a == b, text == other);
            EXPECT_EQ(a == b, text == b);
            EXPECT_EQ(a == b, text == view);
            EXPECT_EQ(a + b, text + other);
            EXPECT_EQ(b + a, RWWString(text).prepend(b));
            EXPECT_EQ(b, RWWString(text).assign(b));
            EXPECT_EQ(a.starts_with(b), text.starts_with(other));
            EXPECT_EQ(a.ends_with(b), text.ends_with(other));
            EXPECT_EQ(a == b ? 1u : 2u, (std::unordered_set<RWWString>{text, b, view}.size()));
            EXPECT_EQ(a.rfind(b), text.rfind(b));
            EXPECT_EQ(a.find(b[0]), text.find(b[0]));
            for (std::size_t from = 0; from <= a.size() + 1; ++from) {
                EXPECT_EQ(a.find(b, from), text.find(b, from)) << from;
                EXPECT_EQ(a.rfind(b, from), text.rfind(other, from)) << from;
                EXPECT_EQ(a.find(b[0], from), text.find(b[0], from)) << from;
                EXPECT_EQ(a.rfind(b[0], from), text.rfind(b[0], from)) << from;
                EXPECT_EQ(from < a.size() ? a.substr(from, b.size()) : L""s, text.substr(from, b.size()));
            }
        }
        std::wostringstream out;
        out << RWWString(a) << L'.';
        EXPECT_EQ(a + L'.', out.str());
        RWWString text(a.data(), a.size());
        text += L'\0';
        text += text;
        text.prepend(text.view().substr(a.size()));
        EXPECT_EQ(L'\0' + a + L'\0' + a + L'\0' + a + L'\0', text) << "taken from itself";
        text.resize(1);
        text.resize(3);
        EXPECT_EQ(L"\0\0\0"s, text.str());
        EXPECT_EQ(L'\0', text.data()[text.length()]);
    }
}

TEST(NarrowString, KeepsZeroBytesAndOrdersByUnsignedByte) {
    EXPECT_FALSE(RWCString("a\0b", 3) == "a");
    EXPECT_LT(RWCString("\x7f"), RWCString("\x80"));
    EXPECT_LT(RWCString("a"), RWCString("a\0", 2));
}
