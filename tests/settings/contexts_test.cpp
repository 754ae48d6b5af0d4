#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "settings/preferences.h"
#include "settings/registry.h"
#include "settings/scopes.h"
#include "settings/settings_store.h"
#include "settings/thread_slots.h"
#include "tests/support/private_registry.h"

namespace {

constexpr auto kNumber = static_cast<QlSetting>(12);
constexpr int kNoContext = -1;

template <class Work>
void OnAnotherThread(Work work) {
    std::thread([&] {
        const SettingsThread thread;
        work();
    }).join();
}

CQlsSettings* GlobalStore() {
    return CQlsSettings::GetSettings(kNoContext, false);
}

TEST(ThreadSlots, AnswerFailureUnlessInitialised) {
    EXPECT_EQ(kTlsmNoSlot, TlsmAlloc());
    EXPECT_FALSE(TlsmFree(0));
    EXPECT_FALSE(TlsmInitializeThread());
    EXPECT_FALSE(TlsmIsThreadInitialized());
    EXPECT_FALSE(TlsmSetValue(0, nullptr));
    EXPECT_EQ(nullptr, TlsmGetValue(0));
    EXPECT_FALSE(TlsmUninitialize());
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
    EXPECT_FALSE(TlsmSetValue(5, &here));
    EXPECT_TRUE(TlsmInitializeThread());
    EXPECT_TRUE(TlsmSetValue(5, &here));
    EXPECT_FALSE(TlsmSetValue(64, &here));
    EXPECT_EQ(nullptr, TlsmGetValue(64));
    std::thread([] {
        EXPECT_FALSE(TlsmIsThreadInitialized());
        EXPECT_TRUE(TlsmInitializeThread());
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
    EXPECT_EQ(kNoContext, CQlsSettings::CreateThreadSettings());
    EXPECT_EQ(kNoContext, CQlsSettings::GetCurThreadSettings());
    EXPECT_EQ(0, CQlsSettings::AddThreadSettingsRef(0));
    EXPECT_EQ(nullptr, GlobalStore());
    EXPECT_FALSE(CQlsSettings::AttachThreadSettings(0));
    EXPECT_FALSE(CQlsSettings::DetachThreadSettings(0));
    EXPECT_FALSE(CQlsSettings::InitializeThread());
    EXPECT_FALSE(CQlsSettings::SetThreadIntSetting(kNumber, 1));
    EXPECT_FALSE(CQlsSettings::GetThreadStrSetting(kNumber, &text, L"default"));
    EXPECT_EQ(L"before", text);
    EXPECT_FALSE(CQlsSettings::GetDefRegIntSetting(L"Sec", L"Ent", &number, 5));
    EXPECT_EQ(7, number);
    CQlsSettings::UninitializeThread();
    CQlsSettings::Uninitialize();
}

TEST(ContextsWithoutStores, StartOnceAndKeepTheirStoreWhenTheSlotComesLater) {
    EXPECT_FALSE(CQlsSettings::Initialize()) << "no thread slot";
    CQlsSettings* const global = GlobalStore();
    ASSERT_NE(nullptr, global);
    EXPECT_TRUE(TlsmInitialize());
    EXPECT_TRUE(CQlsSettings::Initialize());
    EXPECT_EQ(global, GlobalStore());
    EXPECT_FALSE(CQlsSettings::Initialize());
    EXPECT_EQ(global, GlobalStore());
    CQlsSettings::Uninitialize();
    EXPECT_TRUE(TlsmUninitialize());
}

using Contexts = SettingsTest;

TEST_F(Contexts, TheLowestFreeIdIsHandedOut) {
    for (int id = 0; id < 40; ++id) EXPECT_EQ(id, CQlsSettings::CreateThreadSettings());
    for (const int id : {7, 30, 7, 3, 5}) EXPECT_EQ(0, CQlsSettings::ReleaseThreadSettingsRef(id)) << id;
    EXPECT_EQ(1, CQlsSettings::AddThreadSettingsRef(5)) << "taken again by its number";
    for (const int id : {3, 7, 30, 40}) EXPECT_EQ(id, CQlsSettings::CreateThreadSettings());
}

TEST_F(Contexts, ReferencesAreCountedAndTheLastTakesTheStoreAlong) {
    const int id = CQlsSettings::CreateThreadSettings();
    EXPECT_EQ(2, CQlsSettings::AddThreadSettingsRef(id));
    CQlsSettings::GetSettings(id, true)->SetStrSetting(kNumber, L"old");
    EXPECT_EQ(1, CQlsSettings::ReleaseThreadSettingsRef(id));
    EXPECT_NE(GlobalStore(), CQlsSettings::GetSettings(id, false));
    EXPECT_EQ(0, CQlsSettings::ReleaseThreadSettingsRef(id));
    EXPECT_EQ(GlobalStore(), CQlsSettings::GetSettings(id, false));
    EXPECT_EQ(id, CQlsSettings::CreateThreadSettings());
    RWWString text;
    EXPECT_FALSE(CQlsSettings::GetSettings(id, true)->GetStrSetting(kNumber, &text, nullptr));
}

TEST_F(Contexts, AnIdInUseAgainLeavesNoReaderOnItsFormerStore) {
    const int id = CQlsSettings::CreateThreadSettings();
    CQlsSettings::AttachThreadSettings(id);
    while (CQlsSettings::ReleaseThreadSettingsRef(id) > 0) {
    }
    CQlsSettings::GetSettings(id, true)->SetRegStrSetting(L"Sec", L"Ent", L"former");
    EXPECT_EQ(L"former", ThreadText(L"Sec", L"Ent"));
    EXPECT_EQ(id, CQlsSettings::CreateThreadSettings());
    EXPECT_EQ(L"", ThreadText(L"Sec", L"Ent"));
}

TEST_F(Contexts, IdsThatNameNoContextAreHarmless) {
    for (const int id : {0, 16, 1000000, -2, -2147483647 - 1}) {
        EXPECT_EQ(0, CQlsSettings::AddThreadSettingsRef(id)) << id;
        EXPECT_EQ(0, CQlsSettings::ReleaseThreadSettingsRef(id)) << id;
        EXPECT_EQ(GlobalStore(), CQlsSettings::GetSettings(id, false)) << id;
        EXPECT_EQ(nullptr, CQlsSettings::GetSettings(id, true)) << id;
        EXPECT_FALSE(CQlsSettings::AttachThreadSettings(id)) << id;
    }
    EXPECT_EQ(1, CQlsSettings::AddThreadSettingsRef(kNoContext));
    EXPECT_EQ(1, CQlsSettings::ReleaseThreadSettingsRef(kNoContext));
    EXPECT_EQ(nullptr, CQlsSettings::GetSettings(kNoContext, true));
    EXPECT_TRUE(CQlsSettings::AttachThreadSettings(kNoContext));
    EXPECT_EQ(kNoContext, CQlsSettings::GetCurThreadSettings());
    EXPECT_TRUE(CQlsSettings::AttachThreadSettings(CQlsSettings::CreateThreadSettings()))
        << "no context holds it";
}

TEST_F(Contexts, AThreadDetachesAsOftenAsItAttached) {
    const int id = CQlsSettings::CreateThreadSettings(), other = CQlsSettings::CreateThreadSettings();
    EXPECT_FALSE(CQlsSettings::DetachThreadSettings(id));
    EXPECT_TRUE(CQlsSettings::AttachThreadSettings(id));
    EXPECT_TRUE(CQlsSettings::AttachThreadSettings(id));
    EXPECT_FALSE(CQlsSettings::AttachThreadSettings(other));
    EXPECT_FALSE(CQlsSettings::DetachThreadSettings(other));
    for (int attached = 2; attached > 0; --attached) {
        EXPECT_EQ(id, CQlsSettings::GetCurThreadSettings());
        EXPECT_EQ(2, CQlsSettings::ReleaseThreadSettingsRef(id));
        EXPECT_TRUE(CQlsSettings::DetachThreadSettings(id));
    }
    EXPECT_EQ(kNoContext, CQlsSettings::GetCurThreadSettings());
    EXPECT_EQ(0, CQlsSettings::ReleaseThreadSettingsRef(id));
}

TEST_F(Contexts, AThreadStillAttachedFromBeforeARestartIsAttachedToNothing) {
    ASSERT_TRUE(CQlsSettings::AttachThreadSettings(CQlsSettings::CreateThreadSettings()));
    CQlsSettings::SetThreadRegStrSetting(L"Sec", L"Ent", L"before");
    CQlsSettings::Uninitialize();
    EXPECT_EQ(L"", ThreadText(L"Sec", L"Ent"));
    ASSERT_TRUE(CQlsSettings::Initialize());
    const int id = CQlsSettings::CreateThreadSettings();
    EXPECT_EQ(kNoContext, CQlsSettings::GetCurThreadSettings());
    EXPECT_FALSE(CQlsSettings::DetachThreadSettings(id));
    EXPECT_TRUE(CQlsSettings::SetThreadRegStrSetting(L"Sec", L"Ent", L"global"));
    EXPECT_EQ(GlobalStore(), CQlsSettings::GetSettings(id, false));
    EXPECT_TRUE(CQlsSettings::AttachThreadSettings(id));
    EXPECT_EQ(2, CQlsSettings::ReleaseThreadSettingsRef(CQlsSettings::GetCurThreadSettings()));
}

TEST_F(Contexts, AThreadThatEndsAttachedKeepsItsReferenceAndOneNotInitialisedGetsNone) {
    const int id = CQlsSettings::CreateThreadSettings();
    CQlsSettings::SetThreadRegStrSetting(L"Sec", L"Ent", L"global");
    std::thread([id] {
        EXPECT_FALSE(CQlsSettings::AttachThreadSettings(id));
        EXPECT_EQ(L"global", ThreadText(L"Sec", L"Ent"));
    }).join();
    OnAnotherThread([id] { EXPECT_TRUE(CQlsSettings::AttachThreadSettings(id)); });
    EXPECT_EQ(1, CQlsSettings::ReleaseThreadSettingsRef(id));
    EXPECT_EQ(0, CQlsSettings::ReleaseThreadSettingsRef(id));
}

TEST_F(Contexts, AnAttachedThreadReadsTheGlobalStoreUntilItsFirstWrite) {
    CQlsSettings::SetThreadRegStrSetting(L"Sec", L"Ent", L"global");
    CQlsSettings::AttachThreadSettings(CQlsSettings::CreateThreadSettings());
    EXPECT_EQ(L"global", ThreadText(L"Sec", L"Ent"));
    bool flag = false;
    EXPECT_TRUE(CQlsSettings::SetThreadBoolSetting(kNumber, true)) << "which keeps nothing";
    EXPECT_FALSE(CQlsSettings::GetThreadBoolSetting(kNumber, &flag, true));
    EXPECT_FALSE(flag);
    EXPECT_EQ(L"", ThreadText(L"Sec", L"Ent"));
    EXPECT_TRUE(CQlsSettings::SetThreadIntSetting(kNumber, 1)) << "which keeps nothing";
    EXPECT_TRUE(CQlsSettings::SetThreadStrSetting(kNumber, L"own"));
    OnAnotherThread([] {
        RWWString text;
        EXPECT_EQ(L"global", ThreadText(L"Sec", L"Ent"));
        EXPECT_FALSE(CQlsSettings::GetThreadStrSetting(kNumber, &text, L"default"));
    });
    EXPECT_TRUE(CQlsSettings::ClearThreadRegSetting(L"Sec", L"Ent"));
    EXPECT_FALSE(CQlsSettings::ClearThreadRegSetting(L"Sec", L"Ent"));
}

TEST_F(Contexts, DefaultsGoToTheRegistryAndTheGlobalStoreOnly) {
    CQlsSettings::AttachThreadSettings(CQlsSettings::CreateThreadSettings());
    CQlsSettings::SetThreadRegIntSetting(L"Sec", L"Int", 1);
    CQlsSettings::SetThreadRegBoolSetting(L"Sec", L"Bool", false);
    EXPECT_TRUE(CQlsSettings::SetDefRegIntSetting(L"Sec", L"Int", -2));
    EXPECT_TRUE(CQlsSettings::SetDefRegBoolSetting(L"Sec", L"Bool", true));
    EXPECT_TRUE(CQlsSettings::SetDefRegStrSetting(L"Sec", L"Text", L"x"));
    EXPECT_EQ(L"True", GetQLRegStringEx(L"Sec", L"Bool", false));
    EXPECT_EQ(L"x", GetQLRegStringEx(L"Sec", L"Text", false));
    EXPECT_EQ((PrivateRegistry::Stored{REG_DWORD, {0xfe, 0xff, 0xff, 0xff}}), registry_.Get(L"Sec", L"Int"));
    EXPECT_EQ(1, GetQLRegInt(L"Sec", L"Int", 0));
    EXPECT_FALSE(GetQLRegBool(L"Sec", L"Bool", true));
    int number = 0;
    EXPECT_TRUE(CQlsSettings::GetDefRegIntSetting(L"Sec", L"Int", &number));
    EXPECT_EQ(-2, number);
    bool flag = false;
    EXPECT_TRUE(CQlsSettings::GetDefRegBoolSetting(L"Sec", L"Bool", &flag));
    EXPECT_TRUE(flag);
    RWWString text(L"before");
    EXPECT_TRUE(CQlsSettings::SetDefRegStrSetting(L"Sec", L"Text", nullptr));
    EXPECT_EQ(PrivateRegistry::Stored{}, registry_.Get(L"Sec", L"Text"));
    EXPECT_TRUE(CQlsSettings::GetDefRegStrSetting(L"Sec", L"Text", &text, L"default"));
    EXPECT_EQ(L"", text);
}

// --- many threads

// Runs the work on so many initialised threads, half of them attached to a context of their own.
template <class Work>
void OnThreads(int count, Work work) {
    std::vector<std::thread> threads;
    for (int worker = 0; worker < count; ++worker) {
        threads.emplace_back([=] {
            const SettingsThread thread;
            if (worker % 2 == 1) CQlsSettings::AttachThreadSettings(CQlsSettings::CreateThreadSettings());
            work(worker);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

// Where a number of threads wait for each other, again and again. (The library's barrier loses wake-ups on
// this target.)
class Meeting {
  public:
    explicit Meeting(int count) : count_(count) {}

    void arrive_and_wait() {
        std::unique_lock lock(mutex_);
        const int round = round_;
        if (++arrived_ < count_) {
            all_.wait(lock, [&] { return round != round_; });
            return;
        }
        arrived_ = 0;
        ++round_;
        all_.notify_all();
    }

  private:
    std::mutex mutex_;
    std::condition_variable all_;
    const int count_;
    int arrived_ = 0;
    int round_ = 0;
};

class Writers : public Contexts, public testing::WithParamInterface<int> {
  protected:
    static void ExpectRegistryAndStoreToAgree(int round) {
        unsigned registry = 0;
        int store = 0;
        GetRegIntVal(L"Sec", L"Int", &registry);
        CQlsSettings::GetDefRegIntSetting(L"Sec", L"Int", &store);
        ASSERT_EQ(static_cast<int>(registry), store) << "round " << round;
        RWWString text;
        CQlsSettings::GetDefRegStrSetting(L"Sec", L"Text", &text);
        ASSERT_EQ(GetQLRegStringEx(L"Sec", L"Text", false), text) << "round " << round;
    }
};

TEST_P(Writers, LeaveRegistryAndGlobalStoreAlikeAndSeeTheirOwnValue) {
    constexpr int kRounds = 250;
    Meeting together(GetParam());
    OnThreads(GetParam(), [&](int worker) {
        const std::wstring text = std::to_wstring(worker);
        for (int round = 0; round < kRounds; ++round) {
            together.arrive_and_wait();
            WriteQLRegInt(L"Sec", L"Int", worker);
            WriteQLRegString(L"Sec", L"Text", text.c_str());
            if (worker % 2 == 1) {
                EXPECT_EQ(worker, GetQLRegInt(L"Sec", L"Int", -1));
            }
            together.arrive_and_wait();
            if (worker == 0) ExpectRegistryAndStoreToAgree(round);
        }
    });
}

TEST_P(Writers, ReadClearAttachAndRestartWithoutHarm) {
    OnThreads(GetParam(), [&](int worker) {
        const std::wstring own = std::to_wstring(worker);
        for (int round = 0; round < 200; ++round) {
            WriteQLRegInt(L"Sec", L"Int", round);
            WriteQLRegString(L"Sec", own.c_str(), round % 3 == 0 ? nullptr : own.c_str());
            GetQLRegInt(L"Sec", L"Int", -1);
            const QLContextScope context;
            CQlsSettings::SetThreadRegStrSetting(L"Sec", own.c_str(), own.c_str());
            ThreadText(L"Sec", L"0");
            if (worker == 0 && round % 20 == 0) {
                CQlsSettings::Uninitialize();
                EXPECT_TRUE(CQlsSettings::Initialize());
            }
        }
    });
    ExpectRegistryAndStoreToAgree(0);
}

INSTANTIATE_TEST_SUITE_P(Two, Writers, testing::Values(2));
INSTANTIATE_TEST_SUITE_P(Eight, Writers, testing::Values(8));

// One piece of work: a context of its own filled from a document, a helper thread that joins it, and nothing
// of it left behind.
void WorkInContext(int worker, int round) {
    const int value = worker * 1000 + round;
    const std::wstring document = L"{\"Own<-^->Value\":" + std::to_wstring(value) + L"}";
    const QLContextScope context;
    ASSERT_TRUE(context.ok());
    EXPECT_TRUE(context.settings()->SetFromSerializedSettings(document.c_str()));
    EXPECT_EQ(value, GetQLRegInt(L"Own", L"Value", -1));
    EXPECT_EQ(L"", ThreadText(L"Global", std::to_wstring(worker).c_str()));
    if (round % 25 != 0) return;
    std::thread([&] {
        const QLContextScope joined(context.id());
        EXPECT_EQ(value, GetQLRegInt(L"Own", L"Value", -1));
    }).join();
}

// The store that all threads share: each has its own setting in it and one with all others.
void WorkInGlobalStore(const std::wstring& worker, int round) {
    CQlsSettings& store = *GlobalStore();
    RWWString text;
    EXPECT_TRUE(CQlsSettings::SetThreadRegStrSetting(L"Global", worker.c_str(), worker.c_str()));
    EXPECT_EQ(RWWString(worker), ThreadText(L"Global", worker.c_str()));
    store.SetStrSetting(kNumber, worker.c_str());
    store.GetStrSetting(kNumber, &text, worker.c_str());
    EXPECT_EQ(1u, text.length());
    if (round % 7 == 0) store.ClearSetting(kNumber);
    if (round % 10 != 0) return;
    const std::wstring member = L"\"Global<-^->" + worker + L"\":\"" + std::to_wstring(round) + L"\"";
    EXPECT_TRUE(store.SetFromSerializedSettings((L"{" + member + L"}").c_str()));
    EXPECT_TRUE(store.GetSerializedSettings(&text));
    EXPECT_NE(RWWString::npos, text.view().find(member));
}

TEST_F(Contexts, ManyThreadsRecycleContextsAndShareTheGlobalStoreAndLoseNothing) {
    std::vector<std::thread> threads;
    for (int worker = 0; worker < 8; ++worker) {
        threads.emplace_back([worker] {
            const QLThreadScope thread;
            for (int round = 0; round < 100; ++round) {
                WorkInContext(worker, round);
                WorkInGlobalStore(std::to_wstring(worker), round);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(0, CQlsSettings::CreateThreadSettings());
    GlobalStore()->ClearSetting(kNumber);
    RWWString document;
    EXPECT_TRUE(GlobalStore()->GetSerializedSettings(&document));
    EXPECT_EQ(
        LR"({"Global<-^->0":"0","Global<-^->1":"1","Global<-^->2":"2","Global<-^->3":"3",)"
        LR"("Global<-^->4":"4","Global<-^->5":"5","Global<-^->6":"6","Global<-^->7":"7"})",
        document);
}

// --- scopes

TEST(Scopes, SeveralComponentsStartTheLibraryOnceAndTheLastEndsIt) {
    const PrivateRegistry registry;
    {
        const QLLibraryScope first;
        EXPECT_TRUE(first.ok());
        CQlsSettings* const global = GlobalStore();
        {
            const QLLibraryScope second;
            EXPECT_TRUE(second.ok());
        }
        EXPECT_NE(nullptr, global);
        EXPECT_EQ(global, GlobalStore());
        {
            const QLThreadScope thread;
            { const QLThreadScope again; }
            EXPECT_TRUE(thread.ok());
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
    const int other = CQlsSettings::CreateThreadSettings();
    CQlsSettings::AttachThreadSettings(other);
    const int free = other + 1;
    {
        const QLContextScope refused;
        EXPECT_FALSE(refused.ok());
        EXPECT_EQ(free, refused.id());
    }
    EXPECT_EQ(free, CQlsSettings::CreateThreadSettings());
    EXPECT_EQ(2, CQlsSettings::ReleaseThreadSettingsRef(CQlsSettings::GetCurThreadSettings()));
}

}  // namespace
