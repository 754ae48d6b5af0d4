#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "platform/win32.h"
#include "text/ansi_text.h"
#include "text/fields.h"
#include "text/letter_case.h"
#include "text/script_text.h"
#include "text/xml_char_ref.h"

namespace {

using namespace std::string_literals;

bool AnsiIsWestern() {
    return WideCharToSingleByte(0x20AC) == 0x80;
}

TEST(AnsiText, KeepsAsciiOfAnyLengthAndTakesNullAsEmpty) {
    for (const std::size_t length : {0u, 1u, 15u, 16u, 511u, 512u, 513u, 100000u}) {
        const std::wstring wide(length, L'x');
        EXPECT_EQ(std::string(length, 'x'), WideToStdString(wide.c_str()));
        EXPECT_EQ(wide, AnsiToRWWString(std::string(length, 'x').c_str()).str());
        EXPECT_EQ(wide, MakeRWTStringAnsiOnly(wide.c_str()).str());
    }
    EXPECT_EQ("", WideToStdString(nullptr));
    EXPECT_TRUE(WideToRWCString(nullptr).isNull());
    EXPECT_TRUE(AnsiToRWWString(nullptr).isNull());
    EXPECT_TRUE(MakeRWTStringAnsiOnly(nullptr).isNull());
}

TEST(AnsiText, ReplacesWhatTheCodePageLacks) {
    if (!AnsiIsWestern()) GTEST_SKIP() << "the ANSI code page is " << ::GetACP();
    EXPECT_EQ("\xE9?\x80?", WideToStdString(L"\u00e9\u6f22\u20ac\u05d0"));
    EXPECT_EQ(L"\u00e9?\u20acA",
              MakeRWTStringAnsiOnly(L"\u00e9\u6f22\u20ac\uff21"));  // a full-width A has a best fit
    EXPECT_EQ(L"\u20ac\u00ff", AnsiToRWWString("\x80\xFF"));
}

TEST(AnsiText, CountedConversionsKeepZeros) {
    for (const std::wstring& wide : {L"\0"s, L"a\0b"s, L"\0\0a"s, L"a\0\0"s, L""s}) {
        const std::string narrow(wide.begin(), wide.end());
        EXPECT_EQ(narrow, RWTStringToRWCString(wide).str());
        EXPECT_EQ(wide, RWCStringToRWWString(narrow).str());
    }
}

TEST(AnsiText, SingleByteOfWhatIsNoCharacterIsAnUnderscore) {
    EXPECT_EQ('A', WideCharToSingleByte('A'));
    EXPECT_EQ(0, WideCharToSingleByte(0));
    EXPECT_EQ('_', WideCharToSingleByte(0x110000));
    EXPECT_EQ('_', WideCharToSingleByte(0xFFFFFFFF));
    if (!AnsiIsWestern()) return;
    EXPECT_EQ(0xE9, WideCharToSingleByte(0xE9));
    EXPECT_EQ('?', WideCharToSingleByte(0x6F22));
    EXPECT_EQ('?', WideCharToSingleByte(0x10041));  // not the "A" of its low half
}

TEST(XmlCharRef, TakesOnlyWholeReferences) {
    const struct {
        std::string text;
        int taken;  // units, 0 when it is no reference
        unsigned long value;
    } cases[] = {
        {"&#65;", 5, 65},
        {"&#x41;rest", 6, 65},
        {"&#XaF;", 6, 0xAF},
        {"&#;", 3, 0},
        {"&#x;", 4, 0},
        {"&#4294967297;", 13, 1},
        {"&#65", 0, 0},
        {"&#x41", 0, 0},
        {"&#4A;", 0, 0},
        {"&#-1;", 0, 0},
        {"&", 0, 0},
        {"&#", 0, 0},
        {"&#x", 0, 0},
        {"", 0, 0},
        {"x&#65;", 0, 0},
        {"&amp;", 0, 0},
        {"&#x100000041;", 13, 65},
        {"&#x4G;", 0, 0},
        {"&# 65;", 0, 0},
        {"&#xx41;", 0, 0},
    };
    for (const auto& c : cases) {
        const std::wstring wide(c.text.begin(), c.text.end());
        const char* narrowCursor = c.text.c_str();
        const wchar_t* wideCursor = wide.c_str();
        constexpr unsigned long kUntouched = 4711;
        unsigned long narrowValue = kUntouched, wideValue = kUntouched;
        EXPECT_EQ(c.taken != 0, IsXmlCharEntityRefA(&narrowCursor, &narrowValue)) << c.text;
        EXPECT_EQ(c.taken != 0, IsXmlCharEntityRefW(&wideCursor, &wideValue)) << c.text;
        EXPECT_EQ(c.text.c_str() + c.taken, narrowCursor);
        EXPECT_EQ(wide.c_str() + c.taken, wideCursor);
        EXPECT_EQ(c.taken ? c.value : kUntouched, narrowValue) << c.text;
        EXPECT_EQ(narrowValue, wideValue);
    }
}

TEST(XmlCharRef, ReferencesCountAsOneCharacter) {
    EXPECT_EQ(0, AnsiWithEntitiesCharLength(nullptr));
    EXPECT_EQ(0, AnsiWithEntitiesCharLength(""));
    EXPECT_EQ(4, AnsiWithEntitiesCharLength("a&#65;&#x41;b"));
    EXPECT_EQ(6, AnsiWithEntitiesCharLength("&#&#6;&#6"));  // the first and the last are plain text
    EXPECT_EQ(5, AnsiWithEntitiesCharLength("&amp;"));
}

TEST(LetterCase, IsToldFromTheFirstLettersAndWordStarts) {
    const struct {
        const wchar_t* text;
        CaseType type;
    } cases[] = {
        {L"", CASE_UNKNOWN},
        {L"1abc", CASE_UNKNOWN},
        {L" Abc", CASE_UNKNOWN},
        {L"\u6f22", CASE_UNKNOWN},  // a letter without case
        {L"eBook", CASE_UNKNOWN},
        {L"h", CASE_LOWER},
        {L"hello World", CASE_LOWER},
        {L"H", CASE_TITLE},
        {L"Hello", CASE_TITLE},
        {L"Hello World foo", CASE_TITLE},
        {L"A Dog", CASE_TITLE},
        {L"A dog", CASE_SENTENCE},
        {L"Hello world", CASE_SENTENCE},
        {L"Hello world foo Bar", CASE_SENTENCE},
        {L"Hello world Foo", CASE_FIRST_CAPITAL},
        {L"HELLO", CASE_UPPER},
        {L"HEllo world", CASE_UPPER},
        {L"S P Q", CASE_SPACED_CAPITALS},
        {L"S P Q R", CASE_SPACED_CAPITALS},
        {L"S P", CASE_TITLE},
        {L"S P q", CASE_TITLE},
        {L"\u00c4rger \u00fcber", CASE_SENTENCE},
    };
    for (const auto& c : cases) EXPECT_EQ(c.type, GetCase(RWWString(c.text))) << c.text;
}

TEST(LetterCase, Changes) {
    const struct {
        const wchar_t* text;
        int type;
        const wchar_t* changed;
    } cases[] = {
        {L"", 6, L""},
        {L"HELLO World", 1, L"hello world"},
        {L"hELLO World", 2, L"Hello world"},
        {L"o'neil SMITH-jones 2nd", 3, L"O'neil Smith-Jones 2Nd"},
        {L"'tis a dog's life", 3, L"'tis A Dog's Life"},
        {L"stra\u00dfe", 4, L"STRASSE"},
        {L"\u00dcber \u00e9t\u00e9", 4, L"\u00dcBER \u00c9T\u00c9"},
        {L"hELLO World", 5, L"HELLO World"},
        {L"spqr", 6, L"S P Q R"},
        {L"a\u00df", 6, L"A S S"},
        {L"a\xd83d\xde00z", 6, L"A \xd83d\xde00 Z"},  // a pair stays one character
        {L"hELLO", 7, L"hELLO"},
        {L"hELLO", 0, L"hELLO"},
        {L"hELLO", 99, L"hELLO"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.changed, ChangeCase(RWWString(c.text), static_cast<CaseType>(c.type)).str())
            << c.text << c.type;
    }
}

TEST(ScriptName, EscapesAllButAsciiLettersAndDigits) {
    EXPECT_EQ(L"a$20b", QLToJSVarName(L"a b", nullptr).str());
    EXPECT_EQ(L"aZ09$$$5F$E9$u0100$u6F22$ 9$FF",
              QLToJSVarName(L"aZ09$_\u00e9\u0100\u6f22\t\u00ff", L"").str());
    EXPECT_EQ(L"p$20q_a", QLToJSVarName(L"a", L"p q").str());
    EXPECT_EQ(L"p_", QLToJSVarName(nullptr, L"p").str());
    EXPECT_TRUE(QLToJSVarName(nullptr, nullptr).isNull());
}

TEST(ScriptName, EveryUnitComesBack) {
    std::wstring name;
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit) name += static_cast<wchar_t>(unit);
    EXPECT_TRUE(name == JSToQLVarName(QLToJSVarName(name.c_str(), nullptr).data()).str());
}

TEST(ScriptName, MalformedEscapesStand) {
    for (const wchar_t* name :
         {L"", L"$", L"a$", L"$2", L"$2G", L"$u", L"$u12", L"$u12G4", L"$ ", L"$ G", L"$x41", L"p_a"}) {
        EXPECT_EQ(name, JSToQLVarName(name).str());
    }
    EXPECT_EQ(L"$u1\u00e9$", JSToQLVarName(L"$u1$e9$$").str());
    EXPECT_TRUE(JSToQLVarName(nullptr).isNull());
}

TEST(EscapeIllegalChars, AppliesTheFirstRuleThatFits) {
    const struct {
        const wchar_t *text, *script, *markup;
    } cases[] = {
        {L"", L"", L""},
        {L"a\nb\r\nc\rd", L"aNbRc\rd", L"aNbRc\rd"},
        {L"</script></Script>", L"</\" + \"script></Script>", L"&lt;/script&gt;&lt;/Script&gt;"},
        {L"\\n\\r\\n\\2\\r\\x\\", L"NR\\2\\\\r\\\\x\\\\", L"NR\\2\\\\r\\\\x\\\\"},
        {L"\\\\n", L"\\\\N", L"\\\\N"},
        {L"\"'", L"QA", L"QA"},
        {L"&<>\u2028", L"&<>\u2028", L"&amp;&lt;&gt;\\u2028"},
        {L"</script", L"</script", L"&lt;/script"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.script, EscapeIllegalChars(RWWString(c.text), L"N", L"R", L"A", false, L"Q").str());
        EXPECT_EQ(c.markup, EscapeIllegalChars(RWWString(c.text), L"N", L"R", L"A", true, L"Q").str());
    }
    EXPECT_EQ(L"ab\0c"s,
              EscapeIllegalChars(L"a\n\r\n'\"b\0c"s, nullptr, nullptr, nullptr, false, nullptr).str());
}

TEST(Fields, SplitAtTheFirstColon) {
    const struct {
        const wchar_t *text, *name, *rest;
    } cases[] = {{nullptr, L"", L""}, {L"", L"", L""},    {L"a", L"a", L""},
                 {L":", L"", L""},    {L"a:", L"a", L""}, {L":b:c", L"", L"b:c"}};
    for (const auto& c : cases) {
        RWWString name(L"old"), rest(L"old");
        SplitField(c.text, name, rest);
        EXPECT_EQ(c.name, name.str());
        EXPECT_EQ(c.rest, rest.str());
    }
    RWWString name, rest(L"an entry of length:its value:and more");
    SplitField(rest.data(), name, rest);  // splits in place
    EXPECT_EQ(L"an entry of length", name);
    EXPECT_EQ(L"its value:and more", rest);
}

TEST(Fields, ReadTruthValues) {
    for (const bool otherwise : {false, true}) {
        for (const wchar_t* yes : {L"True", L"yes", L"ON"}) EXPECT_TRUE(StrToBool(RWWString(yes), otherwise));
        for (const wchar_t* no : {L"false", L"No", L"oFf"}) EXPECT_FALSE(StrToBool(RWWString(no), otherwise));
        for (const wchar_t* other : {L"", L"1", L"0", L" on", L"yes!", L"y"}) {
            EXPECT_EQ(otherwise, StrToBool(RWWString(other), otherwise)) << other;
        }
    }
}

}  // namespace
