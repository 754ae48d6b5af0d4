#include "text/unicode.h"

#include <gtest/gtest.h>

TEST(Unicode, EveryCharacterComesBackFromBothForms) {
    std::wstring all;
    std::size_t bytes = 0;
    for (char32_t c = 0; c <= ql::kLastCharacter; ++c) {
        if (ql::IsSurrogate(c)) continue;
        ql::AppendUtf16(all, c);
        bytes += c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
    }
    const std::string utf8 = ql::ToUtf8(all);
    EXPECT_EQ(bytes, utf8.size());
    EXPECT_TRUE(all == ql::FromUtf8(utf8)) << "megabytes differ";
    EXPECT_EQ("\xF0\x9F\x98\x80\xE2\x82\xAC", ql::ToUtf8(L"\xD83D\xDE00\x20AC"));
}

TEST(Unicode, SurrogatesAloneAreReplaced) {
    for (const wchar_t* text : {L"\xD83D", L"\xDE00", L"\xD83Dx", L"\xDE00\xD83D"}) {
        const std::wstring_view view(text);
        EXPECT_TRUE(ql::HasLoneSurrogate(view)) << ql::ToUtf8(view);
        EXPECT_TRUE(ql::ToUtf8(view).starts_with("\xEF\xBF\xBD")) << ql::ToUtf8(view);
    }
    EXPECT_FALSE(ql::HasLoneSurrogate(L"x\xD83D\xDE00y"));
}

TEST(Unicode, BytesThatAreNoUtf8AreRefused) {
    for (const char* bytes :
         {"\x80", "\x90\x80", "\xF9\x80\x80\x80", "\xC3", "\xC1\x81", "\xE0\x80\x80", "\xE2\x82", "\xE2\x82x",
          "\xED\xA0\x80", "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
        EXPECT_EQ(std::nullopt, ql::FromUtf8("ok" + std::string(bytes))) << testing::PrintToString(bytes);
        EXPECT_EQ(0u, ql::FirstOfUtf8(bytes).bytes) << testing::PrintToString(bytes);
    }
}
