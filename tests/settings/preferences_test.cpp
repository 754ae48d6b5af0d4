#include "settings/preferences.h"

#include <gtest/gtest.h>

#include <map>
#include <thread>

#include "settings/lifetime.h"
#include "settings/preference_keys.h"
#include "settings/preference_layers.h"
#include "settings/registry.h"
#include "settings/scopes.h"
#include "tests/support/private_registry.h"

namespace {

using Preferences = SettingsTest;
using Stored = PrivateRegistry::Stored;

TEST_F(Preferences, WhatCannotBeReadIsTheDefaultAnEmptyTextOnlyThroughTheEverydayReader) {
    registry_.Put(kUser, L"Sec", L"Empty", L"");
    EXPECT_EQ(L"default", GetQLRegString(L"Sec", L"Empty", L"default"));
    EXPECT_EQ(L"", _GetQLProfileString(L"Sec", L"Empty", L"default"));
    EXPECT_EQ(L"", GetQLRegString(L"Sec", L"Absent", nullptr));
    EXPECT_EQ(L"later", GetQLRegString(L"Sec", L"Absent", L"later"));
    EXPECT_EQ(5, GetQLRegInt(L"Sec", L"Int", 5));
    EXPECT_TRUE(GetQLRegBool(L"Sec", L"Bool", true));
    EXPECT_EQ(9u, GetQLRegColor(L"Sec", L"Empty", 9));
    registry_.Put(kUser, L"Sec", L"Folder", L"D:\\\\");
    EXPECT_EQ(L"D:\\", GetQLProfileDir(L"Sec", L"Folder")) << "exactly one backslash less";
}

TEST_F(Preferences, WhatIsWrittenIsStoredInItsFormAndReadWithoutTheRegistry) {
    WriteQLRegString(L"Sec", L"Text", L"xy");
    WriteQLRegInt(L"Sec", L"Int", -2);
    WriteQLRegBool(L"Sec", L"Bool", true);
    WriteQLRegColor(L"Sec", L"Colour", 0x30201);
    const auto* text = reinterpret_cast<const BYTE*>(L"xy");
    EXPECT_EQ((Stored{REG_SZ, {text, text + sizeof L"xy"}}), registry_.Get(L"Sec", L"Text"));
    ::RegDeleteTreeW(kUser, PrivateRegistry::Path(L"Sec").c_str());
    EXPECT_EQ(0x30201u, GetQLRegColor(L"Sec", L"Colour", 0));
    EXPECT_EQ(LR"({"Sec<-^->Bool":true,"Sec<-^->Colour":"1,2,3","Sec<-^->Int":-2,"Sec<-^->Text":"xy"})",
              DocumentOf(*CQlsSettings::GetSettings(-1, false)));
}

TEST_F(Preferences, ANullTextDeletesTheUsersValueAndLeavesTheGlobalStoreOfAContextAsItWas) {
    registry_.Put(kMachine, L"Sec", L"Text", L"machine");
    for (const wchar_t* former : {L"machine", L"user"}) {
        WriteQLRegString(L"Sec", L"Text", L"user");
        EXPECT_EQ(L"user", GetQLRegString(L"Sec", L"Text", nullptr));
        WriteQLRegString(L"Sec", L"Text", nullptr);
        EXPECT_EQ(L"machine", GetQLRegString(L"Sec", L"Text", nullptr));
        EXPECT_EQ(Stored{}, registry_.Get(L"Sec", L"Text"));
        std::thread([=] { EXPECT_EQ(former, GetQLRegString(L"Sec", L"Text", nullptr)); }).join();
        CQlsSettings::AttachThreadSettings(CQlsSettings::CreateThreadSettings());
    }
}

TEST(PreferencesWithoutStores, AreReadFromTheRegistryEachTime) {
    const PrivateRegistry registry;
    EXPECT_EQ(4, GetQLRegInt(L"Sec", L"Int", 4));
    for (const int number : {5, 6}) {
        WriteQLRegInt(L"Sec", L"Int", number);
        EXPECT_EQ(number, GetQLRegInt(L"Sec", L"Int", 4));
        WriteQLRegString(L"Sec", L"Text", std::to_wstring(number).c_str());
        EXPECT_EQ(std::to_wstring(number), GetQLRegString(L"Sec", L"Text", L"default"));
    }
}

// What each layer holds and which one wins, in one line.
std::wstring Told(const wchar_t* section, const wchar_t* entry) {
    const PreferenceOrigin origin = FindPreference(section, entry);
    std::wstring told;
    for (std::size_t layer = 0; layer < kPreferenceLayers; ++layer) {
        constexpr const wchar_t* kNames[] = {L"context", L"global", L"user", L"machine", L"default"};
        constexpr const wchar_t* kTypes[] = {L"", L"text", L"int", L"bool", L"unreadable"};
        const PreferenceInLayer& content = origin.layers[layer];
        const bool wins = origin.winner == static_cast<PreferenceLayer>(layer);
        if (content.type == PreferenceType::None && !wins) continue;
        told += std::wstring(wins ? L"*" : L"") + kNames[layer] + L":" +
                kTypes[static_cast<int>(content.type)] + L" " + content.value.str() + L"; ";
    }
    return told;
}

TEST_F(Preferences, TellWhichLayerAnswersAndLearnNothingByIt) {
    const std::pair<const wchar_t*, const wchar_t*> ofDefaults[] = {
        {QLIE_SCRIPT_EDITOR_FONT, L"*default:text Consolas:10; "},
        {L"template sequential b 6", L"*default:text 255,255,192; "},
        {L"template nested 1", L"*default:text 0,128,0; "},
        {QLIE_SCRIPT_EDITOR_AUTO_INDENT, L"*default:bool True; "},
        {QLIE_SCRIPT_EDITOR_TAB_WIDTH, L"*default:int 3; "},
        {L"Ent", L"*default: ; "}};
    for (const auto& [entry, told] : ofDefaults) EXPECT_EQ(told, Told(QLIS_DEVELOPMENT, entry));
    const wchar_t* const kFont = QLIE_SCRIPT_EDITOR_FONT;
    registry_.Put(kMachine, QLIS_DEVELOPMENT, kFont, L"machine");
    registry_.Put(kUser, QLIS_DEVELOPMENT, kFont, std::wstring(512, L'x'));
    EXPECT_EQ(L"user:unreadable " + std::to_wstring(513 * sizeof(wchar_t)) +
                  L" bytes of type 1; *machine:text machine; default:text Consolas:10; ",
              Told(QLIS_DEVELOPMENT, kFont));
    registry_.Put(kUser, QLIS_DEVELOPMENT, kFont, L"user");
    EXPECT_EQ(L"user", GetQLRegString(QLIS_DEVELOPMENT, kFont, nullptr)) << "no store had learnt another";
    registry_.Put(kUser, QLIS_DEVELOPMENT, kFont, 7);
    EXPECT_EQ(L"*global:text user; user:int 7; machine:text machine; default:text Consolas:10; ",
              Told(QLIS_DEVELOPMENT, kFont));
    const QLContextScope context;
    CQlsSettings::SetThreadRegBoolSetting(L"Other", L"Entry", true);
    EXPECT_EQ(L"*context:bool True; ", Told(L"Other", L"Entry"));
    EXPECT_EQ(L"global:text user; *user:int 7; machine:text machine; default:text Consolas:10; ",
              Told(QLIS_DEVELOPMENT, kFont));
    GetQLRegBool(L"Other", L"Absent", true);
    registry_.Put(kUser, L"Other", L"Absent", L"since");
    EXPECT_EQ(L"user:text since; *default: ; ", Told(L"Other", L"Absent"));
}

TEST(Lifetime, TheStartReadsWhenDatesAreVerified) {
    for (const auto& [text, option] : {std::pair(L"never", DATE_REDISPLAY_NEVER),
                                       {L"ALWAYS", DATE_REDISPLAY_ALWAYS},
                                       {L"never ", DATE_REDISPLAY_CHANGED}}) {
        const PrivateRegistry registry;
        registry.Put(kUser, QLIS_ANSWER_ENTRY, QLIE_VERIFY_DATES, text);
        EXPECT_TRUE(InitializeUtil());
        EXPECT_EQ(option, g_dateRedisplayOpt) << text;
        UninitializeUtil();
    }
}

TEST(PreferenceKeys, AreAllThereAndUnchangedAndSoAreTheirDefaults) {
#define QL_WIDE(text) L##text
#define QL_KEY_ROW(name, text) {QL_WIDE(#name), text},
#define QL_NUMBER_ROW(name, value) {QL_WIDE(#name), std::to_wstring(name)},
    const std::map<std::wstring, std::wstring> keys = {
        QL_PREFERENCE_SECTIONS(QL_KEY_ROW) QL_PREFERENCE_ENTRIES(QL_KEY_ROW, QL_KEY_ROW)
            QL_PREFERENCE_TEXT_DEFAULTS(QL_KEY_ROW) QL_PREFERENCE_BOOL_DEFAULTS(QL_NUMBER_ROW)
                QL_PREFERENCE_INT_DEFAULTS(QL_NUMBER_ROW)};
    std::wstring all;
    for (const auto& [name, text] : keys) all += name + L'=' + text + L'\n';
    EXPECT_EQ(24u + 531u + 34u, keys.size());
    std::uint64_t digest = 0xcbf29ce484222325;  // FNV-1a
    for (const wchar_t unit : all) digest = (digest ^ static_cast<std::uint64_t>(unit)) * 0x100000001b3;
    EXPECT_EQ(0xb09b3c7575783562, digest) << "hosts and the registries in the field know them";
}

}  // namespace
