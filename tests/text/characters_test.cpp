#include <gtest/gtest.h>

#include "text/blanks.h"
#include "text/characters.h"
#include "text/decimal.h"
#include "text/paths.h"
#include "text/unicode.h"
#include "text/unit_block.h"

TEST(Characters, CompareIgnoringCaseByUpperCasedUnits) {
    const std::tuple<std::wstring, std::wstring, int> cases[] = {
        {L"", L"a", -1},
        {L"azAZ", L"AZaz", 0},
        {L"`", L"@", 1},
        {L"{", L"[", 1},
        {L"b\u00e4", L"a\u00c4", 1},
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
    for (const wchar_t* const other : {L"a", L"ac", L"cab"})
        EXPECT_FALSE(ql::StartsWithIgnoringCase(other, L"ab")) << other;
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
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    const std::wstring zeros(900, L'0'), one = L"1.00000000000000011102230246251565404236316680908203125";
    const std::pair<double, std::vector<std::wstring>> numbers[] = {
        {7, {L"7", L"07.00", L"70E-1", L"0.7e+1", L"0." + zeros + L"7e901", L"7" + zeros + L"e-900"}},
        {9007199254740992, {L"9007199254740992", L"9007199254740993"}},
        {9007199254740994, {L"9007199254740993.0000000000000000000000001"}},
        {90071992547409929.0, {L"90071992547409929"}},
        {std::numeric_limits<double>::denorm_min(), {L"5e-324"}},
        {2.2250738585072011e-308, {L"2.2250738585072011e-308"}},
        // A product or quotient in more digits than a double has, rounded once more, is another neighbour.
        {0x1.6345785cf9e43p+109, {L"9007199253890324E17"}},
        {0x1.03e7acb77f007p+85, {L"3927573E19"}},
        {0x1.79dae6ea85447p+7, {L"188927543E-6", L"188.927543", L"0.00188927543e5"}},
        {-0x1.bdcfe96fa6d0bp+2, {L"-6965814932856357E-15", L"-6.965814932856357"}},
        {1, {one + zeros}},
        {0x1.0000000000001p+0, {one + zeros + L"1"}},
        {1e23, {L"1e23"}},
        {kInfinite, {L"1e309", L"0.1e310", L"1e99999999999999999999", L"1e9223372036854775807"}},
        {0, {L"1e-400", L"0e999", L"0." + zeros + L"1", L"1e-99999999999999999999"}}};
    for (const auto& [value, texts] : numbers) {
        for (const std::wstring& text : texts) {
            const std::wstring beyond = text + L'3', behind = text + L"x9";
            for (const std::wstring_view view :
                 {std::wstring_view(beyond).substr(0, text.size()), {behind}}) {
                const Decimal read = ReadDecimal(view);
                EXPECT_EQ(std::tuple(value, text.size(), true),
                          std::tuple(read.value, read.length, read.isValid))
                    << text;
            }
        }
    }
    for (const auto& [text, length] : {std::pair(L"2e-+3", 3u), {L"-x", 1u}, {L"1.e", 2u}, {L".5", 0u}}) {
        const Decimal read = ReadDecimal(text);
        EXPECT_EQ(std::tuple(0, length, false), std::tuple(read.value, read.length, read.isValid)) << text;
    }
}

TEST(UnitBlock, HoldsTheFirstWantedUnitAtAnyPlace) {
    for (std::size_t place = 0; place <= 40; ++place) {
        std::wstring text(place + 11, L'a');
        const auto isWanted = [](auto unit) { return unit == ql::Unit{L'w'}; };
        const wchar_t* const end = text.data() + text.size() - 1;
        text.back() = L'w';
        EXPECT_EQ(end, ql::FindUnit(text.data(), end, isWanted)) << "which is not looked at";
        text[place] = L'w';
        EXPECT_EQ(text.data() + place, ql::FindUnit(text.data(), end, isWanted));
        text[place] = L'\0';
        for (std::size_t from = 0; from <= place; ++from)
            EXPECT_EQ(place - from, ql::TextLength(&text[from]));
    }
}

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
