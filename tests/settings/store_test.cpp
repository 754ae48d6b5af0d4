#include <gtest/gtest.h>

#include <limits>

#include "settings/registry.h"
#include "settings/settings_store.h"
#include "tests/support/private_registry.h"

namespace {

constexpr auto kNumber = static_cast<QlSetting>(12);

// Whether a text was found, and what was given.
using Found = std::pair<bool, RWWString>;

class Store : public testing::Test {
  protected:
    static RWWString Document(CQlsSettings& store) {
        RWWString document;
        EXPECT_TRUE(store.GetSerializedSettings(&document));
        return document;
    }
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

TEST_F(Store, ATextNeverSetKeepsTheFirstReadersDefault) {
    for (const wchar_t* text : {L"first", L"second"}) EXPECT_EQ(Found(false, L"first"), Text(store_, text));
    EXPECT_TRUE(store_.SetStrSetting(kNumber, L"set"));
    EXPECT_EQ(Found(true, L"set"), Text(store_, L"second"));
    for (const bool was : {true, false}) EXPECT_EQ(was, store_.ClearSetting(kNumber));
    EXPECT_EQ(Found(false, L""), Text(store_, nullptr));
}

TEST_F(Store, NumbersOfTheHostAreDecimalKeysOverTheirWholeRange) {
    for (int number : {0, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        store_.SetStrSetting(static_cast<QlSetting>(number), L"");
    }
    EXPECT_EQ(LR"({"-1":"","-2147483648":"","0":"","2147483647":""})", Document(store_));
}

TEST_F(Store, BooleansAndIntegersByNumberAreNotKept) {
    bool flag = true;
    int number = 7;
    EXPECT_FALSE(store_.SetBoolSetting(kNumber, true));
    EXPECT_FALSE(store_.GetBoolSetting(kNumber, &flag, false));
    EXPECT_FALSE(store_.SetIntSetting(kNumber, 1));
    EXPECT_FALSE(store_.GetIntSetting(kNumber, &number, 2));
    EXPECT_TRUE(flag);
    EXPECT_EQ(7, number);
    EXPECT_EQ(L"{}", Document(store_));
}

TEST_F(Store, ARegistrySettingIsReadOnceUntilItIsCleared) {
    for (const wchar_t* text : {L"one", L"two"}) {
        registry_.Put(kUser, L"Sec", L"Ent", text);
        EXPECT_EQ(Found(true, L"one"), Text(store_, L"Sec", L"Ent"));
    }
    for (const bool was : {true, false}) EXPECT_EQ(was, store_.ClearRegSetting(L"Sec", L"Ent"));
    EXPECT_EQ(Found(true, L"two"), Text(store_, L"Sec", L"Ent"));
}

TEST_F(Store, ASectionMayHoldWhatSeparatesItFromTheEntry) {
    registry_.Put(kUser, L"A<-^->B", L"C", L"its own");
    registry_.Put(kUser, L"A", L"B<-^->C", L"another one's");
    EXPECT_EQ(Found(true, L"its own"), Text(store_, L"A<-^->B", L"C"));
}

TEST_F(Store, TextsGrowAndShrinkAndKeysMayBeLong) {
    const std::wstring longKey(1000, L'k');
    for (const std::size_t length : {1u, 40u, 3u, 0u, 500u}) {
        const std::wstring text(length, L't');
        EXPECT_TRUE(store_.SetRegStrSetting(L"Sec", longKey.c_str(), text.c_str()));
        EXPECT_EQ(Found(true, RWWString(text)), Text(store_, L"Sec", longKey.c_str())) << length;
    }
}

TEST_F(Store, ManySettingsAreAllFoundAndAllCleared) {
    for (int i = 0; i < 2000; ++i) store_.SetRegIntSetting(L"Sec", std::to_wstring(i).c_str(), i);
    for (int i = 0; i < 2000; ++i) {
        int number = -1;
        EXPECT_TRUE(store_.GetRegIntSetting(L"Sec", std::to_wstring(i).c_str(), &number)) << i;
        EXPECT_EQ(i, number);
        EXPECT_TRUE(store_.ClearRegSetting(L"Sec", std::to_wstring(i).c_str())) << i;
    }
    EXPECT_EQ(L"{}", Document(store_));
}

TEST_F(Store, SettingNeitherReadsNorWritesTheRegistry) {
    registry_.Put(kUser, L"Sec", L"Ent", L"False");
    EXPECT_TRUE(store_.SetRegBoolSetting(L"Sec", L"Ent", true));
    bool flag = false;
    EXPECT_TRUE(store_.GetRegBoolSetting(L"Sec", L"Ent", &flag));
    EXPECT_TRUE(flag);
    EXPECT_EQ(L"False", GetQLRegStringEx(L"Sec", L"Ent", false));
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

TEST_F(Store, ANameKeepsItsFirstType) {
    store_.SetRegIntSetting(L"Sec", L"Ent", 4);
    EXPECT_FALSE(store_.SetRegStrSetting(L"Sec", L"Ent", L"text"));
    EXPECT_EQ(Found(false, L"default"), Text(store_, L"Sec", L"Ent", L"default"));
    store_.SetFromSerializedSettings(LR"({"12":true,"Sec<-^->Ent":"text"})");
    EXPECT_EQ(Found(false, L"no text"), Text(store_, L"no text"));
    EXPECT_EQ(LR"({"12":true,"Sec<-^->Ent":4})", Document(store_));
}

TEST_F(Store, MembersSetWhatTheirKeysName) {
    EXPECT_TRUE(store_.SetFromSerializedSettings(
        LR"({"Sec<-^->Ent":3.9, "Sec<-^->Neg":-2.5, "Sec<-^->Most":1e300, "Sec<-^->Least":-1e300,
             "A<-^->B<-^->C":"x", "12":"twelve", "13":true, "14":7.9, "Null":null, "List":[1],
             "Object":{"a":1}, "<-^->":"", "Zero\u0000unit":"a\u0000b"})"));
    EXPECT_EQ(Found(true, L"x"), Text(store_, L"A", L"B<-^->C"));
    EXPECT_EQ(
        LR"({"12":"twelve","13":true,"14":7,"<-^->":"","A<-^->B<-^->C":"x","Sec<-^->Ent":3,)"
        LR"("Sec<-^->Least":-2147483648,"Sec<-^->Most":2147483647,"Sec<-^->Neg":-2,"Zero":"a"})",
        Document(store_));
}

TEST_F(Store, ATextThatIsNoDocumentChangesNothing) {
    store_.SetStrSetting(kNumber, L"kept");
    for (const wchar_t* text : {static_cast<const wchar_t*>(nullptr), L"", L"null", LR"([{"12":"x"}])",
                                LR"({"12":"x","13":tru})"}) {
        EXPECT_FALSE(store_.SetFromSerializedSettings(text)) << text;
        EXPECT_EQ(LR"({"12":"kept"})", Document(store_));
    }
}

TEST_F(Store, ADocumentIsOneLineInTheOrderOfItsKeysWithDefaultsTooAndMakesTheSameStoreElsewhere) {
    Text(store_, L"Sec", L"Absent", L"default");
    store_.SetRegStrSetting(L"Sec", L"File", L"C:\\Temp");
    EXPECT_EQ(LR"({"Sec<-^->Absent":"default","Sec<-^->File":"C:\\Temp"})", Document(store_));
    store_.SetStrSetting(kNumber, L"\"quoted\" \\ / \x1f \xd83d end");
    store_.SetRegStrSetting(L"Word Proc\\Word \"2010\"", L"Template Files", L"D:\\Arbeit\\\x00e9\t");
    store_.SetRegIntSetting(L"Sec", L"Least", std::numeric_limits<int>::min());
    store_.SetRegBoolSetting(L"", L"", false);
    const RWWString document = Document(store_);
    CQlsSettings other;
    EXPECT_TRUE(other.SetFromSerializedSettings(document.data()));
    EXPECT_EQ(document, Document(other));
}

TEST_F(Store, ACopySharesTheSettingsButNotTheAbortFlag) {
    store_.SetAbort();
    CQlsSettings copy(store_);
    copy.ClearAbort();
    copy.SetStrSetting(kNumber, L"through the copy");
    EXPECT_TRUE(store_.GetAbort());
    EXPECT_FALSE(copy.GetAbort());
    EXPECT_EQ(Found(true, L"through the copy"), Text(store_, nullptr));
    CQlsSettings assigned;
    assigned = store_;
    EXPECT_EQ(Document(store_), Document(assigned));
    EXPECT_TRUE(assigned.GetAbort());
}

}  // namespace
