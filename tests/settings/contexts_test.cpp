#include <gmock/gmock.h>

#include <atomic>
#include <optional>
#include <thread>

#include "settings/preferences.h"
#include "settings/registry.h"
#include "settings/scopes.h"
#include "settings/settings_store.h"
#include "settings/thread_slots.h"
#include "tests/support/on_threads.h"
#include "tests/support/private_registry.h"

namespace {

using Settings = CQlsSettings;
// What calls answer, one after the other.
using Answers = std::vector<int>;

constexpr auto kNumber = static_cast<QlSetting>(12);
constexpr int kNoContext = -1;

Settings* GlobalStore() {
    return Settings::GetSettings(kNoContext, false);
}

TEST(ThreadSlots, AnswerFailureUnlessInitialised) {
    EXPECT_EQ(Answers(5), (Answers{TlsmFree(0), TlsmInitializeThread(), TlsmIsThreadInitialized(),
                                   TlsmSetValue(0, nullptr), TlsmUninitialize()}));
    EXPECT_EQ(kTlsmNoSlot, TlsmAlloc());
    EXPECT_EQ(nullptr, TlsmGetValue(0));
    TlsmUninitializeThread();
}

TEST(ThreadSlots, AreSixtyFourAndBeginAgainAtZeroOnceAnyIsFreed) {
    for (const bool isFirst : {true, false}) EXPECT_EQ(isFirst, TlsmInitialize());
    for (unsigned long slot = 0; slot < 64; ++slot) EXPECT_EQ(slot, TlsmAlloc());
    EXPECT_FALSE(TlsmFree(64));
    EXPECT_EQ(kTlsmNoSlot, TlsmAlloc());
    EXPECT_TRUE(TlsmFree(63));
    EXPECT_EQ(0u, TlsmAlloc());
    EXPECT_TRUE(TlsmUninitialize());
    EXPECT_TRUE(TlsmInitialize());
    EXPECT_EQ(1u, TlsmAlloc()) << "only TlsmFree lowers the count";
    EXPECT_TRUE(TlsmFree(0));
    EXPECT_TRUE(TlsmUninitialize());
}

TEST(ThreadSlots, HoldEachThreadsOwnValues) {
    int here = 0;
    EXPECT_TRUE(TlsmInitialize());
    EXPECT_EQ((Answers{false, true, true, false}),
              (Answers{TlsmSetValue(5, &here), TlsmInitializeThread(), TlsmSetValue(5, &here),
                       TlsmSetValue(64, &here)}));
    EXPECT_EQ(nullptr, TlsmGetValue(64));
    std::thread([] { EXPECT_FALSE(TlsmIsThreadInitialized()); }).join();
    EXPECT_EQ(&here, TlsmGetValue(5));
    EXPECT_TRUE(TlsmInitializeThread());
    EXPECT_EQ(nullptr, TlsmGetValue(5)) << "initialised once more";
    TlsmUninitializeThread();
    EXPECT_FALSE(TlsmIsThreadInitialized());
    EXPECT_TRUE(TlsmUninitialize());
}

TEST(ContextsWithoutStores, AnswerFailure) {
    RWWString text(L"before");
    int number = 7;
    EXPECT_EQ((Answers{kNoContext, kNoContext, 0, false, false, false, false, false, false}),
              (Answers{Settings::CreateThreadSettings(), Settings::GetCurThreadSettings(),
                       Settings::AddThreadSettingsRef(0), Settings::AttachThreadSettings(0),
                       Settings::DetachThreadSettings(0), Settings::InitializeThread(),
                       Settings::SetThreadIntSetting(kNumber, 1),
                       Settings::GetThreadStrSetting(kNumber, &text, L"default"),
                       Settings::GetDefRegIntSetting(L"Sec", L"Ent", &number, 5)}));
    EXPECT_EQ(nullptr, GlobalStore());
    EXPECT_EQ(L"before", text);
    EXPECT_EQ(7, number);
    Settings::UninitializeThread();
    Settings::Uninitialize();
}

TEST(ContextsWithoutStores, KeepTheirStoreWhenTheSlotComesLater) {
    EXPECT_FALSE(Settings::Initialize()) << "no thread slot";
    Settings* const global = GlobalStore();
    EXPECT_TRUE(TlsmInitialize());
    for (const bool isFirst : {true, false}) EXPECT_EQ(isFirst, Settings::Initialize());
    EXPECT_EQ(global, GlobalStore());
    Settings::Uninitialize();
    EXPECT_TRUE(TlsmUninitialize());
}

using Contexts = SettingsTest;

TEST_F(Contexts, TheLowestFreeIdIsHandedOut) {
    for (int id = 0; id < 40; ++id) EXPECT_EQ(id, Settings::CreateThreadSettings());
    for (const int id : {7, 30, 7, 3, 5}) EXPECT_EQ(0, Settings::ReleaseThreadSettingsRef(id)) << id;
    EXPECT_EQ(1, Settings::AddThreadSettingsRef(5)) << "taken again by its number";
    for (const int id : {3, 7, 30, 40}) EXPECT_EQ(id, Settings::CreateThreadSettings());
}

TEST_F(Contexts, ReferencesAreCountedAndTheLastTakesTheStoreAlongAlsoFromThreadsThatReadIt) {
    const int id = Settings::CreateThreadSettings();
    EXPECT_TRUE(Settings::AttachThreadSettings(id));
    EXPECT_EQ((Answers{3, 2}),
              (Answers{Settings::AddThreadSettingsRef(id), Settings::ReleaseThreadSettingsRef(id)}));
    Settings::SetThreadRegStrSetting(L"Sec", L"Ent", L"former");
    EXPECT_NE(GlobalStore(), Settings::GetSettings(id, false));
    for (const int left : {1, 0}) EXPECT_EQ(left, Settings::ReleaseThreadSettingsRef(id));
    EXPECT_EQ(GlobalStore(), Settings::GetSettings(id, false));
    Settings::GetSettings(id, true)->SetRegStrSetting(L"Sec", L"Ent", L"former");
    EXPECT_EQ(L"former", ThreadText(L"Sec", L"Ent"));
    EXPECT_EQ(id, Settings::CreateThreadSettings());
    EXPECT_EQ(L"", ThreadText(L"Sec", L"Ent"));
}

TEST_F(Contexts, IdsThatNameNoContextAreHarmless) {
    for (const int id : {0, 16, 1000000, -2, -2147483647 - 1, kNoContext}) {
        const bool isGlobal = id == kNoContext;
        EXPECT_EQ(isGlobal, Settings::AddThreadSettingsRef(id)) << id;
        EXPECT_EQ(isGlobal, Settings::ReleaseThreadSettingsRef(id)) << id;
        EXPECT_EQ(GlobalStore(), Settings::GetSettings(id, false)) << id;
        EXPECT_EQ(nullptr, Settings::GetSettings(id, true)) << id;
        EXPECT_EQ(isGlobal, Settings::AttachThreadSettings(id)) << id;
        EXPECT_EQ(kNoContext, Settings::GetCurThreadSettings()) << id;
    }
    EXPECT_TRUE(Settings::AttachThreadSettings(Settings::CreateThreadSettings())) << "no context holds it";
}

TEST_F(Contexts, AThreadDetachesAsOftenAsItAttached) {
    const int id = Settings::CreateThreadSettings(), other = Settings::CreateThreadSettings();
    EXPECT_EQ((Answers{false, true, true, false, false}),
              (Answers{Settings::DetachThreadSettings(id), Settings::AttachThreadSettings(id),
                       Settings::AttachThreadSettings(id), Settings::AttachThreadSettings(other),
                       Settings::DetachThreadSettings(other)}));
    for (int attached = 2; attached > 0; --attached) {
        EXPECT_EQ(id, Settings::GetCurThreadSettings());
        EXPECT_EQ(2, Settings::ReleaseThreadSettingsRef(id));
        EXPECT_TRUE(Settings::DetachThreadSettings(id));
    }
    EXPECT_EQ(kNoContext, Settings::GetCurThreadSettings());
    EXPECT_EQ(0, Settings::ReleaseThreadSettingsRef(id));
}

TEST_F(Contexts, AThreadStillAttachedFromBeforeARestartIsAttachedToNothing) {
    ASSERT_TRUE(Settings::AttachThreadSettings(Settings::CreateThreadSettings()));
    Settings::SetThreadRegStrSetting(L"Sec", L"Ent", L"before");
    Settings::Uninitialize();
    EXPECT_EQ(L"", ThreadText(L"Sec", L"Ent"));
    ASSERT_TRUE(Settings::Initialize());
    const int id = Settings::CreateThreadSettings();
    EXPECT_EQ(kNoContext, Settings::GetCurThreadSettings());
    EXPECT_FALSE(Settings::DetachThreadSettings(id));
    EXPECT_TRUE(Settings::SetThreadRegIntSetting(L"Sec", L"Ent", 5));
    EXPECT_EQ(GlobalStore(), Settings::GetSettings(id, false));
    EXPECT_TRUE(Settings::AttachThreadSettings(id));
    EXPECT_EQ(2, Settings::ReleaseThreadSettingsRef(Settings::GetCurThreadSettings()));
}

TEST_F(Contexts, AnAttachedThreadReadsTheGlobalStoreUntilItsFirstWriteAndEndsWithItsReference) {
    const int id = Settings::CreateThreadSettings();
    Settings::SetThreadRegStrSetting(L"Sec", L"Ent", L"global");
    OnThreads(1, [id](int) {
        EXPECT_FALSE(Settings::AttachThreadSettings(id)) << "not initialised";
        const SettingsThread thread;
        EXPECT_TRUE(Settings::AttachThreadSettings(id));
        EXPECT_EQ(L"global", ThreadText(L"Sec", L"Ent"));
        bool flag = true;
        EXPECT_TRUE(Settings::SetThreadBoolSetting(kNumber, false)) << "which keeps nothing";
        EXPECT_FALSE(Settings::GetThreadBoolSetting(kNumber, &flag, false));
        EXPECT_TRUE(flag);
        EXPECT_EQ(L"", ThreadText(L"Sec", L"Ent"));
        EXPECT_TRUE(Settings::SetThreadIntSetting(kNumber, 1)) << "which keeps nothing";
        EXPECT_TRUE(Settings::SetThreadStrSetting(kNumber, L"own"));
        for (const bool was : {true, false}) EXPECT_EQ(was, Settings::ClearThreadRegSetting(L"Sec", L"Ent"));
    });
    RWWString text;
    EXPECT_EQ(L"global", ThreadText(L"Sec", L"Ent"));
    EXPECT_FALSE(Settings::GetThreadStrSetting(kNumber, &text, L"default"));
    EXPECT_EQ(1, Settings::ReleaseThreadSettingsRef(id));
}

TEST_F(Contexts, DefaultsGoToTheRegistryAndTheGlobalStoreOnly) {
    const QLContextScope context;
    context.settings()->SetFromSerializedSettings(
        LR"({"Sec<-^->Bool":false,"Sec<-^->Int":1,"Sec<-^->Text":"own"})");
    const RWWString own = DocumentOf(*context.settings());
    EXPECT_TRUE(Settings::SetDefRegIntSetting(L"Sec", L"Int", -2));
    EXPECT_TRUE(Settings::SetDefRegBoolSetting(L"Sec", L"Bool", true));
    EXPECT_TRUE(Settings::SetDefRegStrSetting(L"Sec", L"Text", L"x"));
    EXPECT_EQ((PrivateRegistry::Stored{REG_DWORD, {0xfe, 0xff, 0xff, 0xff}}), registry_.Get(L"Sec", L"Int"));
    EXPECT_EQ(L"True", GetQLRegStringEx(L"Sec", L"Bool", false));
    EXPECT_EQ(L"x", GetQLRegStringEx(L"Sec", L"Text", false));
    EXPECT_EQ(own, DocumentOf(*context.settings()));
    EXPECT_EQ(LR"({"Sec<-^->Bool":true,"Sec<-^->Int":-2,"Sec<-^->Text":"x"})", DocumentOf(*GlobalStore()));
    bool flag = false;
    EXPECT_TRUE(Settings::GetDefRegBoolSetting(L"Sec", L"Bool", &flag));
    EXPECT_TRUE(flag);
    EXPECT_TRUE(Settings::SetDefRegStrSetting(L"Sec", L"Text", nullptr));
    EXPECT_EQ(PrivateRegistry::Stored{}, registry_.Get(L"Sec", L"Text"));
    RWWString text(L"before");
    EXPECT_TRUE(Settings::GetDefRegStrSetting(L"Sec", L"Text", &text, L"default"));
    EXPECT_EQ(L"", text);
}

TEST_F(Contexts, AnAbsentSettingIsFalseZeroOrNullWhereNoDefaultIsGiven) {
    const auto after = [](auto value, auto read) { return read(&value), value; };
    Settings own;
    EXPECT_FALSE(after(true, [&](bool* value) { own.GetRegBoolSetting(L"Sec", L"Bool", value); }));
    EXPECT_FALSE(after(true, [](bool* value) { Settings::GetThreadRegBoolSetting(L"Sec", L"B", value); }));
    EXPECT_FALSE(after(true, [](bool* value) { Settings::GetDefRegBoolSetting(L"Sec", L"Bool", value); }));
    EXPECT_EQ(0, after(1, [&](int* value) { own.GetRegIntSetting(L"Sec", L"Int", value); }));
    EXPECT_EQ(0, after(1, [](int* value) { Settings::GetThreadRegIntSetting(L"Sec", L"I", value); }));
    EXPECT_EQ(0, after(1, [](int* value) { Settings::GetDefRegIntSetting(L"Sec", L"Int", value); }));
    using Text = RWWString;
    const Text a(L"a"), null;
    EXPECT_EQ(null, after(a, [&](Text* value) { own.GetRegStrSetting(L"Sec", L"Text", value); }));
    EXPECT_EQ(null, after(a, [](Text* value) { Settings::GetThreadRegStrSetting(L"Sec", L"T", value); }));
    EXPECT_EQ(null, after(a, [](Text* value) { Settings::GetDefRegStrSetting(L"Sec", L"Text", value); }));
}

// --- many threads

// Waits for all of so many threads, again and again. (The library's barrier loses wake-ups on this target.)
void Meet(std::atomic<int>& arrived, int count) {
    const int all = (arrived++ / count + 1) * count;
    while (arrived < all) std::this_thread::yield();
}

void ExpectRegistryAndGlobalStoreToAgree(int round) {
    unsigned registry = 0;
    int store = 0;
    GetRegIntVal(L"Sec", L"Int", &registry);
    Settings::GetDefRegIntSetting(L"Sec", L"Int", &store);
    ASSERT_EQ(static_cast<int>(registry), store) << "round " << round;
    RWWString text;
    Settings::GetDefRegStrSetting(L"Sec", L"Text", &text);
    ASSERT_EQ(GetQLRegStringEx(L"Sec", L"Text", false), text) << "round " << round;
}

void WriteInRounds(std::atomic<int>& arrived, int count, int worker) {
    const SettingsThread thread;
    for (int round = 0; round < 250; ++round) {
        std::optional<QLContextScope> context;
        if (worker % 2 == 1) context.emplace();
        Meet(arrived, count);
        WriteQLRegInt(L"Sec", L"Int", worker);
        WriteQLRegString(L"Sec", L"Text", std::to_wstring(worker).c_str());
        DocumentOf(*GlobalStore());
        if (context) {
            EXPECT_EQ(worker, GetQLRegInt(L"Sec", L"Int", -1));
        }
        if (context) std::thread([&] { EXPECT_TRUE(QLContextScope(context->id()).ok()); }).join();
        Meet(arrived, count);
        if (worker == 0) ExpectRegistryAndGlobalStoreToAgree(round);
    }
}

TEST_F(Contexts, WritersLeaveRegistryAndGlobalStoreAlikeAndSeeTheirOwnValue) {
    for (const int count : {2, 8}) {
        std::atomic<int> arrived = 0;
        OnThreads(count, [&arrived, count](int worker) { WriteInRounds(arrived, count, worker); });
    }
    EXPECT_EQ(0, Settings::CreateThreadSettings()) << "no context is left";
}

TEST_F(Contexts, WritersReadClearAttachAndRestartWithoutHarm) {
    OnThreads(8, [](int worker) {
        const SettingsThread thread;
        const std::wstring own = std::to_wstring(worker);
        for (int round = 0; round < 200; ++round) {
            WriteQLRegInt(L"Sec", L"Int", round);
            WriteQLRegString(L"Sec", own.c_str(), round % 3 == 0 ? nullptr : own.c_str());
            const QLContextScope context;
            Settings::SetThreadRegStrSetting(L"Sec", own.c_str(), own.c_str());
            ThreadText(L"Sec", L"0");
            if (worker > 0 || round % 20 > 0) continue;
            Settings::Uninitialize();
            EXPECT_TRUE(Settings::Initialize());
        }
    });
    ExpectRegistryAndGlobalStoreToAgree(0);
}

TEST_F(Contexts, AReaderBesideWritersSeesOneWholeText) {
    OnThreads(8, [](int worker) {
        RWWString text;
        for (int round = 0; round < 20'000; ++round) {
            const std::wstring own(static_cast<std::size_t>(round % 90 + worker), wchar_t(L'a' + worker));
            if (worker < 2 && GlobalStore()->SetRegStrSetting(L"Sec", L"Text", own.c_str())) continue;
            GlobalStore()->GetRegStrSetting(L"Sec", L"Text", &text);
            ASSERT_EQ(RWWString(std::wstring(text.length(), text.isNull() ? L'a' : text[0]).c_str()), text);
        }
    });
}

// --- scopes

TEST(Scopes, SeveralComponentsStartTheLibraryOnceAndTheLastEndsIt) {
    const PrivateRegistry registry;
    for (int run = 0; run < 2; ++run) {
        const QLLibraryScope first;
        EXPECT_TRUE(first.ok());
        Settings* const global = GlobalStore();
        EXPECT_NE(nullptr, global);
        EXPECT_TRUE(QLLibraryScope().ok()) << "a second one";
        EXPECT_EQ(global, GlobalStore());
        {
            const QLThreadScope thread;
            EXPECT_TRUE(thread.ok());
            EXPECT_TRUE(QLThreadScope().ok()) << "a second one";
            EXPECT_TRUE(TlsmIsThreadInitialized());
        }
        EXPECT_FALSE(TlsmIsThreadInitialized());
    }
    EXPECT_EQ(nullptr, GlobalStore());
}

TEST(Scopes, WhatCannotStartLeavesNothingBegun) {
    EXPECT_TRUE(TlsmInitialize());
    EXPECT_FALSE(QLLibraryScope().ok()) << "the host started part of it";
    for (int slot = 0; slot < 64; ++slot) TlsmAlloc();
    EXPECT_TRUE(TlsmUninitialize());
    EXPECT_FALSE(QLLibraryScope().ok()) << "no slot is free";
    EXPECT_EQ(nullptr, GlobalStore());
    EXPECT_TRUE(TlsmInitialize()) << "ended again";
    TlsmFree(0);
    EXPECT_TRUE(TlsmUninitialize());
    EXPECT_FALSE(QLThreadScope().ok());
    const QLContextScope context;
    EXPECT_FALSE(context.ok());
    EXPECT_EQ(kNoContext, context.id());
    EXPECT_EQ(nullptr, context.settings());
}

TEST_F(Contexts, AScopeThatCannotAttachLeavesNoContextBehind) {
    const QLContextScope own;
    for (int times = 0; times < 2; ++times) {
        const QLContextScope refused;
        EXPECT_FALSE(refused.ok());
        EXPECT_EQ(own.id() + 1, refused.id());
    }
    EXPECT_EQ(own.id(), Settings::GetCurThreadSettings());
}

}  // namespace
