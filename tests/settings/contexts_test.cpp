#include <gmock/gmock.h>

#include <atomic>
#include <thread>
#include <vector>

#include "settings/preferences.h"
#include "settings/registry.h"
#include "settings/scopes.h"
#include "settings/settings_store.h"
#include "settings/thread_slots.h"
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

// Runs the work on so many threads that use settings.
template <class Work>
void OnThreads(int count, Work work) {
    std::vector<std::thread> threads;
    for (int worker = 0; worker < count; ++worker) {
        threads.emplace_back([=] {
            const SettingsThread thread;
            work(worker);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

TEST(ThreadSlots, AnswerFailureUnlessInitialised) {
    EXPECT_EQ(Answers(5), (Answers{TlsmFree(0), TlsmInitializeThread(), TlsmIsThreadInitialized(),
                                   TlsmSetValue(0, nullptr), TlsmUninitialize()}));
    EXPECT_EQ(kTlsmNoSlot, TlsmAlloc());
    EXPECT_EQ(nullptr, TlsmGetValue(0));
    TlsmUninitializeThread();
}

class Slots : public testing::Test {
  protected:
    Slots() { EXPECT_TRUE(TlsmInitialize()); }
    ~Slots() override {
        TlsmFree(0);
        EXPECT_TRUE(TlsmUninitialize());
    }
};

TEST_F(Slots, AreSixtyFourAndBeginAgainAtZeroOnceAnyIsFreed) {
    EXPECT_FALSE(TlsmInitialize());
    for (unsigned long slot = 0; slot < 64; ++slot) EXPECT_EQ(slot, TlsmAlloc());
    EXPECT_FALSE(TlsmFree(64));
    EXPECT_EQ(kTlsmNoSlot, TlsmAlloc());
    EXPECT_TRUE(TlsmFree(63));
    EXPECT_EQ(0u, TlsmAlloc());
    TlsmUninitialize();
    TlsmInitialize();
    EXPECT_EQ(1u, TlsmAlloc()) << "only TlsmFree lowers the count";
}

TEST_F(Slots, EachThreadHasItsOwnValues) {
    int here = 0;
    EXPECT_EQ((Answers{false, true, true, false}),
              (Answers{TlsmSetValue(5, &here), TlsmInitializeThread(), TlsmSetValue(5, &here),
                       TlsmSetValue(64, &here)}));
    EXPECT_EQ(nullptr, TlsmGetValue(64));
    std::thread([] {
        EXPECT_EQ((Answers{false, true}), (Answers{TlsmIsThreadInitialized(), TlsmInitializeThread()}));
        EXPECT_EQ(nullptr, TlsmGetValue(5));
        TlsmUninitializeThread();
    }).join();
    EXPECT_EQ(&here, TlsmGetValue(5));
    EXPECT_TRUE(TlsmInitializeThread());
    EXPECT_EQ(nullptr, TlsmGetValue(5)) << "initialised once more";
    TlsmUninitializeThread();
    EXPECT_FALSE(TlsmIsThreadInitialized());
}

TEST(ContextsWithoutStores, AnswerFailure) {
    RWWString text(L"before");
    int number = 7;
    EXPECT_EQ((Answers{kNoContext, kNoContext, 0}),
              (Answers{Settings::CreateThreadSettings(), Settings::GetCurThreadSettings(),
                       Settings::AddThreadSettingsRef(0)}));
    EXPECT_EQ(Answers(6), (Answers{Settings::AttachThreadSettings(0), Settings::DetachThreadSettings(0),
                                   Settings::InitializeThread(), Settings::SetThreadIntSetting(kNumber, 1),
                                   Settings::GetThreadStrSetting(kNumber, &text, L"default"),
                                   Settings::GetDefRegIntSetting(L"Sec", L"Ent", &number, 5)}));
    EXPECT_EQ(nullptr, GlobalStore());
    EXPECT_EQ(L"before", text);
    EXPECT_EQ(7, number);
    Settings::UninitializeThread();
    Settings::Uninitialize();
}

TEST(ContextsWithoutStores, StartOnceAndKeepTheirStoreWhenTheSlotComesLater) {
    EXPECT_FALSE(Settings::Initialize()) << "no thread slot";
    Settings* const global = GlobalStore();
    ASSERT_NE(nullptr, global);
    EXPECT_TRUE(TlsmInitialize());
    for (const bool isFirst : {true, false}) {
        EXPECT_EQ(isFirst, Settings::Initialize());
        EXPECT_EQ(global, GlobalStore());
    }
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

TEST_F(Contexts, ReferencesAreCountedAndTheLastTakesTheStoreAlong) {
    const int id = Settings::CreateThreadSettings();
    Settings::GetSettings(id, true)->SetStrSetting(kNumber, L"old");
    EXPECT_EQ((Answers{2, 1}),
              (Answers{Settings::AddThreadSettingsRef(id), Settings::ReleaseThreadSettingsRef(id)}));
    EXPECT_NE(GlobalStore(), Settings::GetSettings(id, false));
    EXPECT_EQ(0, Settings::ReleaseThreadSettingsRef(id));
    EXPECT_EQ(GlobalStore(), Settings::GetSettings(id, false));
    EXPECT_EQ(id, Settings::CreateThreadSettings());
    RWWString text;
    EXPECT_FALSE(Settings::GetSettings(id, true)->GetStrSetting(kNumber, &text, nullptr));
}

TEST_F(Contexts, AnIdInUseAgainLeavesNoReaderOnItsFormerStore) {
    const int id = Settings::CreateThreadSettings();
    Settings::AttachThreadSettings(id);
    for (int references = 2; references > 0; --references) Settings::ReleaseThreadSettingsRef(id);
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
    EXPECT_TRUE(Settings::SetThreadRegStrSetting(L"Sec", L"Ent", L"global"));
    EXPECT_EQ(GlobalStore(), Settings::GetSettings(id, false));
    EXPECT_TRUE(Settings::AttachThreadSettings(id));
    EXPECT_EQ(2, Settings::ReleaseThreadSettingsRef(Settings::GetCurThreadSettings()));
}

TEST_F(Contexts, AThreadThatEndsAttachedKeepsItsReferenceAndOneNotInitialisedGetsNone) {
    const int id = Settings::CreateThreadSettings();
    Settings::SetThreadRegStrSetting(L"Sec", L"Ent", L"global");
    std::thread([id] {
        EXPECT_FALSE(Settings::AttachThreadSettings(id));
        EXPECT_EQ(L"global", ThreadText(L"Sec", L"Ent"));
    }).join();
    OnThreads(1, [id](int) { EXPECT_TRUE(Settings::AttachThreadSettings(id)); });
    for (const int left : {1, 0}) EXPECT_EQ(left, Settings::ReleaseThreadSettingsRef(id));
}

TEST_F(Contexts, AnAttachedThreadReadsTheGlobalStoreUntilItsFirstWrite) {
    Settings::SetThreadRegStrSetting(L"Sec", L"Ent", L"global");
    Settings::AttachThreadSettings(Settings::CreateThreadSettings());
    EXPECT_EQ(L"global", ThreadText(L"Sec", L"Ent"));
    bool flag = false;
    EXPECT_TRUE(Settings::SetThreadBoolSetting(kNumber, true)) << "which keeps nothing";
    EXPECT_FALSE(Settings::GetThreadBoolSetting(kNumber, &flag, true));
    EXPECT_FALSE(flag);
    EXPECT_EQ(L"", ThreadText(L"Sec", L"Ent"));
    EXPECT_TRUE(Settings::SetThreadIntSetting(kNumber, 1)) << "which keeps nothing";
    EXPECT_TRUE(Settings::SetThreadStrSetting(kNumber, L"own"));
    OnThreads(1, [](int) {
        RWWString text;
        EXPECT_EQ(L"global", ThreadText(L"Sec", L"Ent"));
        EXPECT_FALSE(Settings::GetThreadStrSetting(kNumber, &text, L"default"));
    });
    for (const bool was : {true, false}) EXPECT_EQ(was, Settings::ClearThreadRegSetting(L"Sec", L"Ent"));
}

TEST_F(Contexts, DefaultsGoToTheRegistryAndTheGlobalStoreOnly) {
    Settings::AttachThreadSettings(Settings::CreateThreadSettings());
    Settings::SetThreadRegIntSetting(L"Sec", L"Int", 1);
    Settings::SetThreadRegBoolSetting(L"Sec", L"Bool", false);
    EXPECT_TRUE(Settings::SetDefRegIntSetting(L"Sec", L"Int", -2));
    EXPECT_TRUE(Settings::SetDefRegBoolSetting(L"Sec", L"Bool", true));
    EXPECT_TRUE(Settings::SetDefRegStrSetting(L"Sec", L"Text", L"x"));
    EXPECT_EQ(L"True", GetQLRegStringEx(L"Sec", L"Bool", false));
    EXPECT_EQ(L"x", GetQLRegStringEx(L"Sec", L"Text", false));
    EXPECT_EQ((PrivateRegistry::Stored{REG_DWORD, {0xfe, 0xff, 0xff, 0xff}}), registry_.Get(L"Sec", L"Int"));
    EXPECT_EQ(1, GetQLRegInt(L"Sec", L"Int", 0));
    EXPECT_FALSE(GetQLRegBool(L"Sec", L"Bool", true));
    int number = 0;
    EXPECT_TRUE(Settings::GetDefRegIntSetting(L"Sec", L"Int", &number));
    EXPECT_EQ(-2, number);
    bool flag = false;
    EXPECT_TRUE(Settings::GetDefRegBoolSetting(L"Sec", L"Bool", &flag));
    EXPECT_TRUE(flag);
    EXPECT_TRUE(Settings::SetDefRegStrSetting(L"Sec", L"Text", nullptr));
    EXPECT_EQ(PrivateRegistry::Stored{}, registry_.Get(L"Sec", L"Text"));
    RWWString text(L"before");
    EXPECT_TRUE(Settings::GetDefRegStrSetting(L"Sec", L"Text", &text, L"default"));
    EXPECT_EQ(L"", text);
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

TEST_F(Contexts, WritersLeaveRegistryAndGlobalStoreAlikeAndSeeTheirOwnValue) {
    for (const int count : {2, 8}) {
        std::atomic<int> arrived = 0;
        OnThreads(count, [&arrived, count](int worker) {
            const bool hasOwn = worker % 2 == 1;
            if (hasOwn) Settings::AttachThreadSettings(Settings::CreateThreadSettings());
            for (int round = 0; round < 250; ++round) {
                Meet(arrived, count);
                WriteQLRegInt(L"Sec", L"Int", worker);
                WriteQLRegString(L"Sec", L"Text", std::to_wstring(worker).c_str());
                if (hasOwn) {
                    EXPECT_EQ(worker, GetQLRegInt(L"Sec", L"Int", -1));
                }
                Meet(arrived, count);
                if (worker == 0) ExpectRegistryAndGlobalStoreToAgree(round);
            }
        });
    }
}

TEST_F(Contexts, WritersReadClearAttachAndRestartWithoutHarm) {
    OnThreads(8, [](int worker) {
        const std::wstring own = std::to_wstring(worker);
        for (int round = 0; round < 200; ++round) {
            WriteQLRegInt(L"Sec", L"Int", round);
            WriteQLRegString(L"Sec", own.c_str(), round % 3 == 0 ? nullptr : own.c_str());
            GetQLRegInt(L"Sec", L"Int", -1);
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

// Each thread has its own setting in the global store and one with all others, and then a context of its own,
// which is filled from a document, joined by a helper, and leaves nothing behind.
TEST_F(Contexts, ManyThreadsRecycleContextsAndShareTheGlobalStoreAndLoseNothing) {
    OnThreads(8, [](int worker) {
        const std::wstring own = std::to_wstring(worker);
        const std::wstring document = L"{\"Own<-^->Value\":" + own + L"}";
        for (int round = 0; round < 100; ++round) {
            RWWString text;
            EXPECT_TRUE(Settings::SetThreadRegStrSetting(L"Global", own.c_str(), own.c_str()));
            EXPECT_EQ(RWWString(own), ThreadText(L"Global", own.c_str()));
            GlobalStore()->SetStrSetting(kNumber, own.c_str());
            GlobalStore()->GetStrSetting(kNumber, &text, own.c_str());
            EXPECT_EQ(1u, text.length());
            if (round % 7 == 0) GlobalStore()->ClearSetting(kNumber);
            EXPECT_TRUE(GlobalStore()->GetSerializedSettings(&text));
            EXPECT_NE(RWWString::npos, text.view().find(L"Global<-^->" + own));
            const QLContextScope context;
            ASSERT_TRUE(context.ok());
            EXPECT_TRUE(context.settings()->SetFromSerializedSettings(document.c_str()));
            EXPECT_EQ(L"", ThreadText(L"Global", own.c_str()));
            if (round % 25 > 0) continue;
            std::thread([&] {
                const QLContextScope joined(context.id());
                EXPECT_EQ(worker, GetQLRegInt(L"Own", L"Value", -1));
            }).join();
        }
    });
    EXPECT_EQ(0, Settings::CreateThreadSettings());
}

// --- scopes

TEST(Scopes, SeveralComponentsStartTheLibraryOnceAndTheLastEndsIt) {
    const PrivateRegistry registry;
    {
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
    EXPECT_TRUE(QLLibraryScope().ok()) << "once more";
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
    const int free = Settings::CreateThreadSettings() + 1;
    Settings::AttachThreadSettings(free - 1);
    {
        const QLContextScope refused;
        EXPECT_FALSE(refused.ok());
        EXPECT_EQ(free, refused.id());
    }
    EXPECT_EQ(free, Settings::CreateThreadSettings());
    EXPECT_EQ(2, Settings::ReleaseThreadSettingsRef(Settings::GetCurThreadSettings()));
}

}  // namespace
