#include "text/string_table.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>

#include "rw/file.h"
#include "rw/virtual_streams.h"
#include "tests/support/test_folder.h"

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

TEST(StringTable, AddsAtBothEndsInsideAndPastTheEndWithPaddingAndDeletes) {
    QLStringTable table(INT_MIN);  // the hint never hurts
    EXPECT_TRUE(table.InsertString(L"x", 2));
    EXPECT_TRUE(table.InsertString(L"y", 3));
    EXPECT_TRUE(table.InsertString(L"z", 0));
    EXPECT_FALSE(table.InsertString(L"far", UINT_MAX));
    EXPECT_TRUE(table.AppendString(L"b"));
    EXPECT_TRUE(table.AppendString(RWWString(L"c\0d"s)));
    EXPECT_TRUE(table.PrependString(RWWString(L"a")));
    EXPECT_TRUE(table.PrependString(static_cast<const wchar_t*>(nullptr)));
    for (const unsigned index : {2u, 4u, UINT_MAX}) table.DeleteEntry(index);
    EXPECT_EQ(L"~a~~~y~b~c\0d~"s, Joined(table));
    table.ClearEntries();
    EXPECT_EQ(0u, table.NumEntries());
    EXPECT_EQ(0u, QLStringTable(INT_MAX).NumEntries());
}

TEST(StringTable, OnlySquareBracketsGrowAndOnlyToAnIndexThatATableCanHave) {
    const QLStringTable table = TableOf({L"a", L"b"});
    EXPECT_EQ(L"b", table(1));
    EXPECT_EQ(L"", table(2));
    EXPECT_EQ(L"", table(-1));
    EXPECT_EQ(2u, table.NumEntries());
    for (const int index : {-1, INT_MIN, INT_MAX}) {
        EXPECT_TRUE(table[index].isNull());
        table[index] = L"lost";
    }
    table[5] = L"f";
    EXPECT_EQ(L"a~b~~~~f~", Joined(table));
}

TEST(StringTable, FindsTheFirstEqualEntry) {
    const QLStringTable table = TableOf({L"ab", L"abc", L"ABC", L"\u00e4", L"ab\0c"s});
    EXPECT_EQ(1, table.Index(L"ABC", true));
    EXPECT_EQ(2, table.Index(L"ABC", false));
    EXPECT_EQ(3, table.Index(L"\u00c4", true));
    EXPECT_EQ(-1, table.Index(L"\u00c4", false));
    for (const bool ignoringCase : {true, false}) {
        EXPECT_EQ(0, table.Index(L"ab", ignoringCase));
        EXPECT_EQ(4, table.Index(RWWString(L"ab\0c"s), ignoringCase));
    }
}

TEST(StringTable, CopiesAreEqualAndApart) {
    const QLStringTable table = TableOf({L"a", L"b"});
    QLStringTable copy(table);
    EXPECT_TRUE(copy == table);
    copy[0] = L"A";
    EXPECT_FALSE(copy == table);
    EXPECT_EQ(L"a", table(0));
    copy = table;
    copy = *&copy;
    EXPECT_TRUE(copy == table);
    copy.AppendString(L"");
    EXPECT_FALSE(copy == table);
}

TEST(StringTable, StoresCountedNarrowTextsAndAppendsTheWholeOnesThatItRestores) {
    const TestFolder folder;
    const QLStringTable table = TableOf({L"ab", L"", L"c\0d"s});
    RWFile file((folder / L"table").c_str(), L"w+b");
    table.saveOn(file);
    const std::string stored = BytesOf(folder / L"table");  // without waiting for the file to be closed
    QLStringTable restored = TableOf({L"old"});
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(file.SeekTo(0));
        restored.restoreFrom(file);
    }
    EXPECT_EQ(L"old~ab~~c~ab~~c~", Joined(restored));
    EXPECT_EQ("\3\0\0\0\2\0\0\0ab\0\0\0\0\3\0\0\0c\0d"s, stored);
    EXPECT_EQ(stored.size(), table.binaryStoreSize());
    // One is cut, and the other's counts no form could hold.
    for (const std::string& form : {stored.substr(0, stored.size() - 1), std::string(8, '\xFF')}) {
        std::stringbuf buffer(form);
        RWBufferIstream stream(buffer);
        restored.restoreFrom(stream);
    }
    EXPECT_EQ(L"old~ab~~c~ab~~c~ab~~", Joined(restored));
}

}  // namespace
