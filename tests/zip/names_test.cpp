#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include "engine/dos_time.h"
#include "engine/entry_name.h"
#include "engine/item_list.h"
#include "engine/name_encoding.h"

namespace {

using namespace ql::zip;

TEST(EntryName, IsSafeBelowItsFolderWhereItNamesAPlainFile) {
    const std::pair<bool, const char*> lists[] = {
        {true,
         R"(a,a.txt,a/b,a\b,folder/,with blank.txt,.hidden,..a,a..b/c,console.txt,com,com10,lpt,nul-a)"},
        {true, "\u00e4\u20ac.doc"},
        {false, R"(/,\,/a,\a,//server/share/a,\\server\share\a,c:,c:a,c:/a,C:\a,a/c:b,file:///a)"},
        {false, R"(..,../a,a/../b,a/..,..\a,a\..\..\b,.,./a,a/./b,a//b,a\/b,folder//)"},
        {false, R"(a:stream,a.txt::$DATA,a.,a ,a./b,a /b,a. /b,..., )"},
        {false, "con,NUL,nul.txt,aux .txt,folder/PRN.a.b,com1,COM9.log,lpt0,com\u00b9,CONIN$,clock$"},
        {false, "a*,a?,a\"b,a<b,a>b,a|b,a\nb,\x7f"}};
    for (const auto& [isSafe, list] : lists) {
        std::istringstream names(list);
        for (std::string name; std::getline(names, name, ',');)
            EXPECT_EQ(isSafe, IsSafeEntryName(name)) << name;
    }
    for (const std::string& name : {std::string(), std::string("a\0b", 3), std::string(256, 'a'),
                                    "a/" + std::string(256, 'b'), std::string(5000, '/')})
        EXPECT_FALSE(IsSafeEntryName(name)) << name;
    EXPECT_TRUE(IsSafeEntryName(std::string(255, 'a')));
}

TEST(EntryName, ReadsParts) {
    EXPECT_EQ(WithSlashes("a\\b/c"), "a/b/c");
    EXPECT_EQ(LastPart("a/b\\c.txt"), "c.txt");
    EXPECT_EQ(LastPart("a/b/"), "b");
    EXPECT_EQ(LastPart("/"), "");
    for (const char* name : {"a", "12345678.123", "\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4.txt"})
        EXPECT_FALSE(IsLongName(name)) << name;
    for (const char* name : {"123456789", "a.html", "a.b.c", "a b"}) EXPECT_TRUE(IsLongName(name)) << name;
}

TEST(ItemList, Splits) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"", {}},
        {" \t\r\n ", {}},
        {"  a  \"b c\"d \"\" e", {"a", "b c", "d", "e"}},
        {"\"never closed ", {"never closed "}},
        {"a\"b c", {"a\"b", "c"}}};
    for (const auto& [list, items] : cases) EXPECT_EQ(SplitItems(list), items) << list;
}

TEST(ItemList, WildCards) {
    const std::tuple<bool, const char32_t*, const char32_t*> cases[] = {
        {true, U"*", U""},      {true, U"*.*", U"nodot"},      {true, U"*.txt", U"a.txt"},
        {true, U"a?c", U"abc"}, {true, U"a*b*c", U"axxbyybc"}, {true, U"**a", U"ba"},
        {true, U"", U""},       {true, U"*.a.*", U"x.a.y"},    {false, U"*.txt", U"a.txtx"},
        {false, U"a?c", U"ac"}, {false, U"a*b*c", U"axxbyyb"}, {false, U"", U"a"},
        {false, U"?", U""},     {false, U"abc", U"abcd"},      {false, U"a*", U"b"}};
    for (const auto& [matches, pattern, text] : cases)
        EXPECT_EQ(matches, MatchesWildCards(pattern, text))
            << testing::PrintToString(std::pair(pattern, text));
}

TEST(NamePatterns, HoldFoldersAndNamesApart) {
    const std::tuple<const char*, const char*, bool, bool> cases[] = {
        {"a.txt", "A.TXT", true, true},           {"a.txt", "sub/a.txt", false, true},
        {"sub\\*.txt", "sub/a.txt", true, true},  {"sub/*.txt", "sub/deep/a.txt", false, true},
        {"su*/a.txt", "sub/a.txt", false, false}, {"sub/*.txt", "other/sub/a.txt", false, false},
        {"\u00c4*", "\u00e4b", true, true},       {"?.txt", "\u20ac.txt", true, true},
        {"folder/", "folder/", true, true},       {"*", "folder/", true, true}};
    for (const auto& [pattern, name, here, below] : cases) {
        EXPECT_EQ(here, NamePatterns({pattern}, false).Match(name)) << pattern << ' ' << name;
        EXPECT_EQ(below, NamePatterns({pattern}, true).Match(name)) << pattern << ' ' << name;
    }
    EXPECT_FALSE(NamePatterns({}, true).Match("a"));
}

TEST(NameEncoding, ReadsBothEncodings) {
    EXPECT_EQ("a\u00e4\u00c7\u00a0\u00df", Utf8FromOem("a\x84\x80\xff\xe1"));
    for (const char* text : {"", "a", "\u00e4\u20ac\U0001f600"}) EXPECT_TRUE(IsUtf8(text)) << text;
    for (const char* text :
         {"\x80", "\xc3", "\xc0\xaf", "\xe0\x80\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xff", "\xe2\x82"})
        EXPECT_FALSE(IsUtf8(text)) << text;
    EXPECT_EQ(CodePoints("\u00e4\U0001f600\xff"), U"\u00e4\U0001f600\u00ff");
    EXPECT_EQ(U"A\u00c4\u00d7\u0178\u0386\u0490\u0218\u1ea4\uff21\u00df\U00010428",
              Folded("a\u00e4\u00d7\u00ff\u03ac\u0491\u0219\u1ea5\uff41\u00df\U00010428"));
}

TEST(DosTime, KeepsLocalTimesInTwoSecondSteps) {
    const CalendarTime time{2024, 2, 29, 23, 59, 59};
    EXPECT_EQ(DosTimeText(ToDosTime(time)), "02/29/24 23:59:58");
    EXPECT_EQ(DosTimeText(ToDosTime({1979, 12, 31, 1, 1, 1})), "01/01/80 00:00:00");
    EXPECT_EQ(DosTimeText(ToDosTime({2108, 1, 1, 0, 0, 0})), "12/31/07 23:59:58");
    EXPECT_EQ(DosTimeText(0xffffffff), "15/31/07 31:63:62");
    EXPECT_EQ(DosTimeText(0), "00/00/80 00:00:00");
    EXPECT_LT(ToDosTime({1999, 12, 31, 23, 59, 58}), ToDosTime({2000, 1, 1, 0, 0, 0}));
}

}  // namespace
