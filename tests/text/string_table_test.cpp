#include "text/string_table.h"

#include <gtest/gtest.h>

#include <climits>
#include <deque>
#include <random>
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

TEST(StringTable, AddsAtBothEndsInsideAndPastTheEndWithPadding) {
    QLStringTable table(INT_MIN);  // the hint never hurts
    EXPECT_TRUE(table.InsertString(L"x", 2));
    EXPECT_TRUE(table.InsertString(L"y", 3));
    EXPECT_TRUE(table.InsertString(L"z", 0));
    EXPECT_FALSE(table.InsertString(L"far", UINT_MAX));
    EXPECT_TRUE(table.AppendString(L"b"));
    EXPECT_TRUE(table.AppendString(RWWString(L"c\0d"s)));
    EXPECT_TRUE(table.PrependString(RWWString(L"a")));
    EXPECT_TRUE(table.PrependString(static_cast<const wchar_t*>(nullptr)));
    table.DeleteEntry(UINT_MAX);
    EXPECT_EQ(L"~a~z~~~x~y~b~c\0d~"s, Joined(table));
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
    for (const bool ignoringCase : {true, false})
        EXPECT_EQ(4, table.Index(RWWString(L"ab\0c"s), ignoringCase));
}

// Changes at both ends and in between, beside a deque that takes the same.
TEST(StringTable, KeepsItsOrderThroughChangesAtEveryPlace) {
    QLStringTable table;
    std::deque<std::wstring> model;
    std::minstd_rand random(1);  // NOLINT: the same changes every time
    for (int i = 0; i < 3000; ++i) {
        const std::wstring text = std::to_wstring(i);
        const auto place = static_cast<unsigned>(random() % (model.size() + 1));
        const auto at = model.begin() + static_cast<std::ptrdiff_t>(place);
        switch (random() % 6) {
            case 0:
            case 1: model.push_front(text), table.PrependString(text); break;
            case 2: model.push_back(text), table.AppendString(text); break;
            case 3: model.insert(at, text), table.InsertString(text, place); break;
            case 4: table.DeleteEntry(0), model.empty() ? void() : model.pop_front(); break;
            default: table.DeleteEntry(place), at == model.end() ? model.end() : model.erase(at);
        }
        ASSERT_EQ(model.size(), table.NumEntries());
        ASSERT_EQ(place < model.size() ? model[place] : std::wstring(), table(static_cast<int>(place)));
    }
    EXPECT_EQ(table, TableOf({model.begin(), model.end()}));
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

const std::string kStored = "\3\0\0\0\2\0\0\0ab\0\0\0\0\3\0\0\0c\0d"s;

TEST(StringTable, StoresCountedNarrowTextsAndAppendsWhatItRestores) {
    const TestFolder folder;
    const QLStringTable table = TableOf({L"ab", L"", L"c\0d"s});
    RWFile file((folder / L"table").c_str(), L"w+b");
    table.saveOn(file);
    QLStringTable restored = TableOf({L"old"});
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(file.SeekTo(0));
        restored.restoreFrom(file);
    }
    EXPECT_EQ(L"old~ab~~c~ab~~c~", Joined(restored));
    EXPECT_EQ(kStored, BytesOf(folder / L"table"));
    EXPECT_EQ(kStored.size(), table.binaryStoreSize());
}

TEST(StringTable, RestoresTheWholeTextsOfACutForm) {
    std::vector<std::string> forms = {std::string(8, '\xFF')};  // counts that no form could hold
    for (std::size_t length = 1; length < kStored.size(); ++length)
        forms.push_back(kStored.substr(0, length));
    for (const std::string& form : forms) {
        std::stringbuf buffer(form);
        RWBufferIstream stream(buffer);
        QLStringTable restored;
        restored.restoreFrom(stream);
        EXPECT_EQ(form.size() < 10   ? L""
                  : form.size() < 14 ? L"ab~"
                                     : L"ab~~",
                  Joined(restored))
            << form.size();
    }
}

}  // namespace
