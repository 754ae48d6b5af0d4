#include <gtest/gtest.h>

#include "platform/win32.h"
#ifndef _WIN32
#include "tests/native/ansi_page.h"
#endif
#include "text/ansi_text.h"
#include "text/fields.h"
#include "text/letter_case.h"
#include "text/script_text.h"
#include "text/xml_char_ref.h"

namespace {

using namespace std::string_literals;

TEST(AnsiText, KeepsAsciiOfAnyLengthAndCountedZeros) {
    std::string keptNarrow;
    RWWString keptWide;
    for (const std::size_t length : {1u, 15u, 16u, 63u, 64u, 65u, 511u, 512u, 100000u, 513u}) {
        std::wstring wide(length, L'x');
        std::string narrow(length, 'x');
        EXPECT_EQ(narrow, WideToStdString(wide.c_str()));
        EXPECT_EQ(narrow, WideToRWCString(wide.c_str()).str());
        EXPECT_EQ(wide, AnsiToRWWString(narrow.c_str()).str());
        EXPECT_EQ(wide, MakeRWTStringAnsiOnly(wide.c_str()).str());
        wide[length / 2] = L'\0';
        narrow[length / 2] = '\0';
        EXPECT_EQ(narrow, RWTStringToRWCString(wide).str());
        EXPECT_EQ(wide, RWCStringToRWWString(narrow).str());
        EXPECT_TRUE(WideToAnsi(wide, keptNarrow));
        EXPECT_EQ(narrow, keptNarrow);
        EXPECT_TRUE(AnsiToWide(narrow, keptWide));
        EXPECT_EQ(wide, keptWide.str());
    }
    EXPECT_EQ("", WideToStdString(nullptr));
    EXPECT_TRUE(AnsiToRWWString(nullptr).isNull());
}

#ifdef _WIN32
// In the midst of a text each has what the system makes of it alone.
TEST(AnsiText, ConvertsEveryUnitAndEveryByteAsTheSystemDoes) {
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit) {
        const auto wide = static_cast<wchar_t>(unit);
        char alone[8] = {};
        ::WideCharToMultiByte(CP_ACP, 0, &wide, 1, alone, sizeof alone, nullptr, nullptr);
        const std::size_t before = unit % 16,
                          behind = 15 - before;  // at each place of a block, and in the rest
        const std::wstring text =
            std::wstring(before, L'a') + wide + std::wstring(behind, L'b') + wide + L'z';
        ASSERT_EQ(std::string(before, 'a') + alone + std::string(behind, 'b') + alone + "z",
                  WideToStdString(text))
            << unit;
    }
    std::string bytes = "every byte with its zero:";
    for (int byte = -128; byte <= 127; ++byte) bytes += static_cast<char>(byte);
    std::wstring wide(bytes.size(), L'\0');
    const int size = static_cast<int>(bytes.size());
    ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, wide.data(), size);
    EXPECT_EQ(wide, RWCStringToRWWString(bytes).str());
}
#else
TEST(AnsiText, PagesOfManyBytesAreConvertedWholeAndCountedByCharacters) {
    const std::wstring text = L"sixteen ASCII units, then \u3042\u6f22 and a zero";
    for (const auto& [page, most] :
         {std::pair("UTF-8", 4u), std::pair("CP932", 2u), std::pair("GB18030", 4u)}) {
        const fake::AnsiPage ansi(page, most);
        const std::string bytes = WideToStdString(text);
        EXPECT_LT(text.size(), bytes.size()) << page;
        EXPECT_EQ(text, AnsiToRWWString(bytes.c_str())) << page;
        EXPECT_EQ(text + L'\0' + text, RWCStringToRWWString(bytes + '\0' + bytes)) << page;
        const std::string cut = bytes + "&#65;\x81";  // what is no character counts byte by byte
        EXPECT_EQ(static_cast<int>(text.size()) + 2, AnsiWithEntitiesCharLength(cut.c_str())) << page;
    }
}
#endif

TEST(AnsiText, ReplacesWhatTheCodePageLacksAndWhatIsNoCharacter) {
    EXPECT_EQ('A', WideCharToSingleByte('A'));
    EXPECT_EQ(0, WideCharToSingleByte(0));
    EXPECT_EQ('_', WideCharToSingleByte(0x110000));
    EXPECT_EQ('_', WideCharToSingleByte(0xFFFFFFFF));
    if (WideCharToSingleByte(0x20AC) != 0x80) GTEST_SKIP() << "the ANSI code page is " << ::GetACP();
    EXPECT_EQ(0xE9, WideCharToSingleByte(0xE9));
    EXPECT_EQ('?', WideCharToSingleByte(0x6F22));
    EXPECT_EQ('?', WideCharToSingleByte(0x10041)) << "not the A of its low half";
    EXPECT_EQ("ab\xE9?\x80???", WideToStdString(L"ab\u00e9\u6f22\u20ac\u05d0\xd83d\xde00"));
    EXPECT_EQ(L"\u00e9?\u20acA", MakeRWTStringAnsiOnly(L"\u00e9\u6f22\u20ac\uff21")) << "the best fit";
    EXPECT_EQ(L"\u20ac\u00ff", AnsiToRWWString("\x80\xFF"));
}

TEST(XmlCharRef, IsToldWithoutACursorOrAPlaceForItsValue) {
    const wchar_t* cursor = L"&#65;";
    EXPECT_TRUE(IsXmlCharEntityRefW(&cursor, nullptr));
    EXPECT_FALSE(IsXmlCharEntityRefA(nullptr, nullptr));
    EXPECT_EQ(0, AnsiWithEntitiesCharLength(nullptr));
    EXPECT_EQ(8, AnsiWithEntitiesCharLength("a&#x41;&#&#6;&#6")) << "half references are plain text";
}

TEST(LetterCase, IsToldFromTheFirstLettersAndWordStarts) {
    const std::pair<CaseType, std::vector<const wchar_t*>> cases[] = {
        {CASE_UNKNOWN, {L"", L"1abc", L" Abc", L"\u6f22", L"eBook"}},  // a letter without case
        {CASE_LOWER, {L"h", L"hello World"}},
        {CASE_TITLE, {L"H", L"Hello World foo", L"A Dog", L"S P", L"S P q"}},
        {CASE_SENTENCE, {L"A dog", L"Hello world", L"Hello world foo Bar", L"\u00c4rger \u00fcber"}},
        {CASE_FIRST_CAPITAL, {L"Hello world Foo"}},
        {CASE_UPPER, {L"HELLO", L"HEllo world"}},
        {CASE_SPACED_CAPITALS, {L"S P Q", L"S P Q R"}}};
    for (const auto& [type, texts] : cases)
        for (const wchar_t* text : texts) EXPECT_EQ(type, GetCase(RWWString(text))) << text;
}

TEST(LetterCase, Changes) {
    const struct {
        const wchar_t* text;
        CaseType type;
        const wchar_t* changed;
    } cases[] = {
        {L"", CASE_SPACED_CAPITALS, L""},
        {L"HELLO World", CASE_LOWER, L"hello world"},
        {L"hELLO World", CASE_SENTENCE, L"Hello world"},
        {L"o'neil SMITH-jones 2nd", CASE_TITLE, L"O'neil Smith-Jones 2Nd"},
        {L"'tis a dog's life \u24d0", CASE_TITLE, L"'tis A Dog's Life \u24d0"},  // circled, no letter
        {L"\u00fcber stra\u00dfe", CASE_UPPER, L"\u00dcBER STRASSE"},
        {L"hELLO World", CASE_FIRST_CAPITAL, L"HELLO World"},
        {L"a\u00df\xd83d\xde00z", CASE_SPACED_CAPITALS, L"A S S \xd83d\xde00 Z"},        // a pair stays one
        {L"iZ\u00e4\u0436\u00ff1_\xde00", CASE_UPPER, L"IZ\u00c4\u0416\u01781_\xde00"},  // no Turkish i
        {L"iZ\u00c4\u0416\u01781_\xd83d", CASE_LOWER, L"iz\u00e4\u0436\u00ff1_\xd83d"},
        {L"hELLO", CASE_UNKNOWN, L"hELLO"},
        {L"hELLO", static_cast<CaseType>(99), L"hELLO"}};
    for (const auto& [text, type, changed] : cases)
        EXPECT_EQ(changed, ChangeCase(RWWString(text), type).str()) << text << type;
    EXPECT_EQ(L"a\0b"s, ChangeCase(RWWString(L"A\0B"s), CASE_LOWER).str());
}

TEST(ScriptName, EscapesAllButAsciiLettersAndDigitsAndMalformedEscapesStand) {
    EXPECT_EQ(L"p$20q_azAZ09$$$5F$E9$u0100$u6F22$ 9$FF",
              QLToJSVarName(L"azAZ09$_\u00e9\u0100\u6f22\t\u00ff", L"p q").str());
    EXPECT_EQ(L"p_", QLToJSVarName(nullptr, L"p").str());
    EXPECT_TRUE(QLToJSVarName(L"", nullptr).isNull());
    std::wstring name;
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit) name += static_cast<wchar_t>(unit);
    EXPECT_TRUE(name == JSToQLVarName(QLToJSVarName(name.c_str(), nullptr).data()).str());
    for (const wchar_t* malformed :
         {L"", L"a$", L"$2", L"$2G", L"$u", L"$u12", L"$u12G4", L"$ ", L"$ G", L"$x41", L"p_a"}) {
        EXPECT_EQ(malformed, JSToQLVarName(malformed).str());
    }
    EXPECT_EQ(L"$u1\u00af\u00fa$$", JSToQLVarName(L"$u1$AF$fa$$$").str());
    EXPECT_TRUE(JSToQLVarName(nullptr).isNull());
}

TEST(EscapeIllegalChars, AppliesTheFirstRuleThatFits) {
    const wchar_t* const cases[][3] = {
        {L"a\nb\r\nc\rd\"'", L"aNbRc\rdQA", L"aNbRc\rdQA"},
        {L"</script></Script></script", L"</\" + \"script></Script></script",
         L"&lt;/script&gt;&lt;/Script&gt;&lt;/script"},
        {L"\\n\\r\\n\\2\\r\\x\\\\n\\", L"NR\\2\\\\r\\\\x\\\\N\\\\", L"NR\\2\\\\r\\\\x\\\\N\\\\"},
        {L"&<>\u2028", L"&<>\u2028", L"&amp;&lt;&gt;\\u2028"}};
    for (const auto& [text, script, markup] : cases) {
        EXPECT_EQ(script, EscapeIllegalChars(RWWString(text), L"N", L"R", L"A", false, L"Q").str());
        EXPECT_EQ(markup, EscapeIllegalChars(RWWString(text), L"N", L"R", L"A", true, L"Q").str());
    }
    EXPECT_EQ(L"ab\0c"s,
              EscapeIllegalChars(L"a\n\r\n'\"b\0c"s, nullptr, nullptr, nullptr, false, nullptr).str());
}

TEST(Fields, SplitAtTheFirstColon) {
    const wchar_t* const cases[][3] = {
        {nullptr, L"", L""},
        {L"a", L"a", L""},
        {L":b:c", L"", L"b:c"},
        {L"an entry of length:its value", L"an entry of length", L"its value"}};
    for (const auto& [text, expectedName, expectedRest] : cases) {
        RWWString name(L"old"), rest(text);
        SplitField(rest.data(), name, rest);  // in place
        EXPECT_EQ(expectedName, name.str());
        EXPECT_EQ(expectedRest, rest.str());
    }
}

TEST(Fields, ReadTruthValues) {
    for (const bool otherwise : {true, false}) {
        for (const wchar_t* yes : {L"True", L"yes", L"ON"}) EXPECT_TRUE(StrToBool(yes, otherwise)) << yes;
        for (const wchar_t* no : {L"false", L"No", L"oFf"}) EXPECT_FALSE(StrToBool(no, otherwise)) << no;
        for (const wchar_t* other : {L"", L"1", L" on", L"yes!"})
            EXPECT_EQ(otherwise, StrToBool(other, otherwise)) << other;
    }
}

}  // namespace
