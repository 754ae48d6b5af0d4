#include "text/string_table.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>
#include <string>
#include <vector>

#include "rw/virtual_streams.h"

namespace {

using namespace std::string_literals;

QLStringTable TableOf(const std::vector<std::wstring>& texts) {
    QLStringTable table;
    for (const std::wstring& text : texts) table.AppendString(RWWString(text));
    return table;
}

std::wstring Joined(const QLStringTable& table) {
    RWWString out;
    table.AppendToString(out);
    return out.str();
}

std::string Stored(const QLStringTable& table) {
    std::stringbuf buffer;
    RWBufferOstream stream(buffer);
    table.saveOn(stream);
    return buffer.str();
}

void Restore(QLStringTable& table, const std::string& bytes) {
    std::stringbuf buffer(bytes);
    RWBufferIstream stream(buffer);
    table.restoreFrom(stream);
}

TEST(StringTable, AddsAtBothEndsAndJoins) {
    QLStringTable table(INT_MIN);  // the hint never hurts
    EXPECT_EQ(L"", Joined(table));
    EXPECT_TRUE(table.AppendString(L"b"));
    EXPECT_TRUE(table.AppendString(RWWString(L"c\0d"s)));
    EXPECT_TRUE(table.PrependString(RWWString(L"a")));
    EXPECT_TRUE(table.PrependString(static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(L"~a~b~c\0d~"s, Joined(table));
    EXPECT_EQ(0u, QLStringTable(INT_MAX).NumEntries());
}

TEST(StringTable, InsertsInsideAndPadsPastTheEnd) {
    QLStringTable table;
    EXPECT_TRUE(table.InsertString(L"x", 3));
    EXPECT_EQ(L"~~~x~", Joined(table));
    EXPECT_TRUE(table.InsertString(L"y", 4));
    EXPECT_TRUE(table.InsertString(L"z", 0));
    EXPECT_EQ(L"z~~~~x~y~", Joined(table));
    EXPECT_FALSE(table.InsertString(L"far", UINT_MAX));
    EXPECT_EQ(6u, table.NumEntries());
}

TEST(StringTable, OnlySquareBracketsGrow) {
    const QLStringTable table = TableOf({L"a", L"b"});
    EXPECT_TRUE(table(5).isNull());
    EXPECT_TRUE(table(-1).isNull());
    EXPECT_EQ(L"b", table(1));
    EXPECT_EQ(2u, table.NumEntries());
    table[5] = L"f";
    EXPECT_EQ(L"a~b~~~~f~", Joined(table));
}

TEST(StringTable, IndexesThatNoTableHasReachNoEntry) {
    QLStringTable table = TableOf({L"a"});
    for (const int index : {-1, INT_MIN, INT_MAX}) {
        EXPECT_TRUE(table[index].isNull());
        table[index] = L"lost";
    }
    EXPECT_EQ(L"a~", Joined(table));
}

TEST(StringTable, FindsTheFirstEqualEntry) {
    const QLStringTable table = TableOf({L"ab", L"abc", L"ABC", L"\u00e4"});
    EXPECT_EQ(1, table.Index(L"ABC", true));
    EXPECT_EQ(2, table.Index(L"ABC", false));
    EXPECT_EQ(3, table.Index(L"\u00c4", true));
    EXPECT_EQ(-1, table.Index(L"\u00c4", false));
    EXPECT_EQ(-1, table.Index(L"", true));
}

TEST(StringTable, DeletesEntries) {
    QLStringTable table = TableOf({L"a", L"b", L"c"});
    table.DeleteEntry(3);
    table.DeleteEntry(UINT_MAX);
    EXPECT_EQ(L"a~b~c~", Joined(table));
    table.DeleteEntry(1);
    EXPECT_EQ(L"a~c~", Joined(table));
    table.ClearEntries();
    EXPECT_EQ(0u, table.NumEntries());
}

TEST(StringTable, CopiesAreEqualAndApart) {
    const QLStringTable table = TableOf({L"a", L"b"});
    QLStringTable copy(table);
    EXPECT_TRUE(copy == table);
    copy[0] = L"A";
    EXPECT_FALSE(copy == table);
    EXPECT_EQ(L"a", table(0));
    copy = table;
    const QLStringTable& same = copy;
    copy = same;
    EXPECT_TRUE(copy == table);
    copy.AppendString(L"");
    EXPECT_FALSE(copy == table);
}

TEST(StringTable, StoresCountedNarrowTextsAndAppendsWhatItRestores) {
    const QLStringTable table = TableOf({L"ab", L"", L"c\0d"s});
    const std::string bytes = "\3\0\0\0\2\0\0\0ab\0\0\0\0\3\0\0\0c\0d"s;
    EXPECT_EQ(bytes, Stored(table));
    EXPECT_EQ(bytes.size(), table.binaryStoreSize());
    QLStringTable restored = TableOf({L"old"});
    Restore(restored, bytes);
    Restore(restored, bytes);
    EXPECT_EQ(L"old~ab~~c~ab~~c~", Joined(restored));
}

TEST(StringTable, RestoresTheWholeTextsOfACutForm) {
    const std::string bytes = Stored(TableOf({L"ab", L"cd"}));
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        QLStringTable restored;
        Restore(restored, bytes.substr(0, length));
        EXPECT_EQ(length < 10 ? L"" : L"ab~", Joined(restored)) << length;
    }
    QLStringTable restored;
    Restore(restored, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s);  // counts that no form could hold
    EXPECT_EQ(0u, restored.NumEntries());
}

}  // namespace
