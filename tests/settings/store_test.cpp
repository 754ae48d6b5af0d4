#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <set>

#include "settings/registry.h"
#include "settings/setting_key.h"
#include "settings/settings_store.h"
#include "tests/support/private_registry.h"

namespace {

constexpr auto kNumber = static_cast<QlSetting>(12);

// Whether a text was found, and what was given.
using Found = std::pair<bool, RWWString>;

class Store : public testing::Test {
  protected:
    static Found Text(CQlsSettings& store, const wchar_t* defaultText) {
        RWWString text;
        const bool found = store.GetStrSetting(kNumber, &text, defaultText);
        return {found, text};
    }
    static Found Text(CQlsSettings& store, const wchar_t* section, const wchar_t* entry,
                      const wchar_t* defaultText = nullptr) {
        RWWString text;
        const bool found = store.GetRegStrSetting(section, entry, &text, defaultText);
        return {found, text};
    }

    PrivateRegistry registry_;
    CQlsSettings store_;
};

// A hash that left out a unit, its place or the length would put many keys into one place.
TEST(KeyHash, DiffersWithEveryUnitOfSectionAndEntry) {
    std::set<std::uint32_t> hashes = {0};
    for (std::size_t size = 0; size < 40; ++size) {
        std::wstring text(size, L'\0');
        for (wchar_t& unit : text) {
            unit = L'k';
            hashes.insert(ql::KeyHash::Of(ql::KeyHash(7).Add(text), ql::KeyHash(8).Add(L"entry")));
            hashes.insert(ql::KeyHash::Of(ql::KeyHash(7).Add(L"section"), ql::KeyHash(8).Add(text)));
        }
        EXPECT_EQ(1 + size * (size + 1), hashes.size()) << size;
    }
}

TEST_F(Store, ATextNeverSetKeepsTheFirstReadersDefault) {
    for (const wchar_t* text : {L"first", L"second"}) EXPECT_EQ(Found(false, L"first"), Text(store_, text));
    EXPECT_TRUE(store_.SetStrSetting(kNumber, L"set"));
    EXPECT_EQ(Found(true, L"set"), Text(store_, L"second"));
    for (const bool was : {true, false}) EXPECT_EQ(was, store_.ClearSetting(kNumber));
    EXPECT_EQ(Found(false, L""), Text(store_, nullptr));
}

TEST_F(Store, NumbersOfTheHostAreDecimalKeysAndBooleansAndIntegersUnderThemAreNotKept) {
    for (int number : {-1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        store_.SetStrSetting(static_cast<QlSetting>(number), L"");
    bool flag = true;
    int number = 7;
    EXPECT_FALSE(store_.SetBoolSetting(kNumber, true));
    EXPECT_FALSE(store_.GetBoolSetting(kNumber, &flag, false));
    EXPECT_FALSE(store_.SetIntSetting(kNumber, 1));
    EXPECT_FALSE(store_.GetIntSetting(kNumber, &number, 2));
    EXPECT_TRUE(flag);
    EXPECT_EQ(7, number);
    EXPECT_EQ(LR"({"-1":"","-2147483648":"","2147483647":""})", DocumentOf(store_));
}

TEST_F(Store, ARegistrySettingIsReadOnceUntilItIsClearedWhateverItsSectionHolds) {
    registry_.Put(kUser, L"A", L"B<-^->C", L"another one's");
    for (const wchar_t* text : {L"one", L"two"}) {
        registry_.Put(kUser, L"A<-^->B", L"C", text);
        EXPECT_EQ(Found(true, L"one"), Text(store_, L"A<-^->B", L"C"));
    }
    for (const bool was : {true, false}) EXPECT_EQ(was, store_.ClearRegSetting(L"A<-^->B", L"C"));
    EXPECT_EQ(Found(true, L"two"), Text(store_, L"A<-^->B", L"C"));
    EXPECT_EQ(LR"({"A<-^->B<-^->C":"two"})", DocumentOf(store_));
    store_.SetFromSerializedSettings(LR"({"A<-^->B<-^->C":"three"})");
    EXPECT_EQ(Found(true, L"three"), Text(store_, L"A<-^->B", L"C"));
}

TEST_F(Store, ManySettingsUnderKeysOfAnyLengthAreFoundAgainAndCleared) {
    const auto sectionOf = [](std::size_t i) { return std::wstring(i / 5, L's'); };
    const auto keyOf = [](std::size_t i) { return std::wstring(i, L'k'); };
    for (std::size_t round = 1; round <= 3; ++round) {  // texts grow and shrink
        const auto textOf = [round](std::size_t i) { return std::wstring(i * round * 7 % 60, L't'); };
        for (std::size_t i = 0; i < 1000; ++i)
            store_.SetRegStrSetting(sectionOf(i).c_str(), keyOf(i).c_str(), textOf(i).c_str());
        for (std::size_t i = 0; i < 1000; ++i)
            ASSERT_EQ(Found(true, textOf(i)), Text(store_, sectionOf(i).c_str(), keyOf(i).c_str())) << i;
    }
    for (std::size_t gone = 0; gone < 3; ++gone) {  // every third
        for (std::size_t i = gone; i < 1000; i += 3)
            EXPECT_TRUE(store_.ClearRegSetting(sectionOf(i).c_str(), keyOf(i).c_str())) << i;
        for (std::size_t i = 0; i < 1000; ++i)
            ASSERT_TRUE(i % 3 <= gone || Text(store_, sectionOf(i).c_str(), keyOf(i).c_str()).first) << i;
    }
    EXPECT_EQ(L"{}", DocumentOf(store_));
}

// At odd places too, as in a host's packed records; in the 32-bit library.
TEST_F(Store, ASettingIsFoundWhereverItsTextsStandInMemory) {
    constexpr wchar_t kText[] = L"a text of some blocks";
    EXPECT_TRUE(store_.SetRegIntSetting(kText, kText, 5));
    alignas(16) char bytes[16 + sizeof kText];
    for (std::size_t at = 0; at < 16; at += sizeof(void*) == 4 ? 1 : sizeof(wchar_t)) {
        std::memcpy(bytes + at, kText, sizeof kText);
        const auto* const text = reinterpret_cast<const wchar_t*>(bytes + at);
        int value = 0;
        EXPECT_TRUE(store_.GetRegIntSetting(text, text, &value, 0)) << at;
    }
}

TEST_F(Store, AbsentRegistrySettingsAndThoseOfTheWrongKindAreTheirFirstDefaultAndStayAbsent) {
    registry_.Put(kUser, L"Sec", L"Text", L"a text of more than four bytes");
    registry_.Put(kUser, L"Sec", L"Number", 1);
    int number = 0;
    bool flag = false;
    EXPECT_FALSE(store_.GetRegIntSetting(L"Sec", L"Text", &number, 5));
    EXPECT_FALSE(store_.GetRegBoolSetting(L"Sec", L"Number", &flag, true));
    EXPECT_TRUE(flag);
    EXPECT_EQ(Found(false, L"default"), Text(store_, L"Sec", L"Missing", L"default"));
    registry_.Put(kUser, L"Sec", L"Text", 9);
    EXPECT_FALSE(store_.GetRegIntSetting(L"Sec", L"Text", &number, 6));
    EXPECT_EQ(5, number);
    EXPECT_FALSE(store_.IsRegIntSettingSet(L"Sec", L"Text"));
}

TEST_F(Store, ANameKeepsItsFirstTypeAndSettingItLeavesTheRegistryAlone) {
    registry_.Put(kUser, L"Sec", L"Ent", L"False");
    EXPECT_TRUE(store_.SetRegBoolSetting(L"Sec", L"Ent", true));
    EXPECT_FALSE(store_.SetRegStrSetting(L"Sec", L"Ent", L"text"));
    EXPECT_EQ(Found(false, L"default"), Text(store_, L"Sec", L"Ent", L"default"));
    EXPECT_EQ(L"False", GetQLRegStringEx(L"Sec", L"Ent", false));
    store_.SetFromSerializedSettings(LR"({"12":true})");
    EXPECT_EQ(Found(false, L"no text"), Text(store_, L"no text"));
    EXPECT_FALSE(store_.SetFromSerializedSettings(nullptr));
    EXPECT_EQ(LR"({"12":true,"Sec<-^->Ent":true})", DocumentOf(store_));
}

TEST_F(Store, ACopySharesTheSettingsButNotTheAbortFlag) {
    store_.SetAbort();
    CQlsSettings copy(store_), assigned;
    EXPECT_FALSE(assigned.GetAbort());
    assigned = store_;
    copy.ClearAbort();
    copy.SetStrSetting(kNumber, L"through the copy");
    EXPECT_TRUE(store_.GetAbort());
    EXPECT_FALSE(copy.GetAbort());
    EXPECT_TRUE(assigned.GetAbort());
    for (CQlsSettings* other : {&store_, &assigned})
        EXPECT_EQ(Found(true, L"through the copy"), Text(*other, nullptr));
}

}  // namespace
