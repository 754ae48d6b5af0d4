#include <gtest/gtest.h>

#include <thread>

#include "settings/registry.h"
#include "settings/settings_store.h"
#include "settings/thread_slots.h"
#include "tests/support/private_registry.h"

namespace {

template <class Work>
void OnAnotherThread(Work work) {
    std::thread([&] {
        const SettingsThread thread;
        work();
    }).join();
}

TEST(ThreadSlots, AnswerFailureUnlessInitialised) {
    for (const bool answer : {TlsmFree(0), TlsmInitializeThread(), TlsmIsThreadInitialized(),
                              TlsmSetValue(0, nullptr), TlsmUninitialize()}) {
        EXPECT_FALSE(answer);
    }
    EXPECT_EQ(kTlsmNoSlot, TlsmAlloc());
    EXPECT_EQ(nullptr, TlsmGetValue(0));
    TlsmUninitializeThread();
}

class Slots : public testing::Test {
  protected:
    Slots() { EXPECT_TRUE(TlsmInitialize()); }
    ~Slots() override { EXPECT_TRUE(TlsmUninitialize()); }
};

TEST_F(Slots, AreSixtyFourAndBeginAgainAtZeroOnceAnyIsFreed) {
    EXPECT_FALSE(TlsmInitialize());
    for (unsigned long slot = 0; slot < 64; ++slot) EXPECT_EQ(slot, TlsmAlloc());
    EXPECT_FALSE(TlsmFree(64) || TlsmFree(kTlsmNoSlot));
    EXPECT_EQ(kTlsmNoSlot, TlsmAlloc());
    EXPECT_TRUE(TlsmFree(1));
    EXPECT_EQ(0u, TlsmAlloc());
}

TEST_F(Slots, EachThreadHasItsOwnValues) {
    int here = 0;
    const auto startsEmpty = [] { return TlsmInitializeThread() && !TlsmGetValue(5); };
    EXPECT_FALSE(TlsmSetValue(5, &here));
    EXPECT_TRUE(startsEmpty());
    EXPECT_TRUE(TlsmSetValue(5, &here));
    EXPECT_FALSE(TlsmSetValue(64, &here) || TlsmGetValue(64));
    std::thread([&] {
        EXPECT_TRUE(!TlsmIsThreadInitialized() && startsEmpty());
        TlsmUninitializeThread();
    }).join();
    EXPECT_EQ(&here, TlsmGetValue(5));
    EXPECT_TRUE(startsEmpty()) << "once more";
    TlsmUninitializeThread();
    EXPECT_FALSE(TlsmIsThreadInitialized());
}

constexpr auto kNumber = static_cast<QlSetting>(12);

TEST(ContextsWithoutStores, AnswerFailure) {
    RWWString text(L"before");
    int number = 7;
    EXPECT_EQ(-1, CQlsSettings::CreateThreadSettings());
    EXPECT_EQ(-1, CQlsSettings::GetCurThreadSettings());
    for (const bool answer :
         {CQlsSettings::AddThreadSettingsRef(0) != 0, CQlsSettings::GetSettings(-1, false) != nullptr,
          CQlsSettings::AttachThreadSettings(0), CQlsSettings::DetachThreadSettings(0),
          CQlsSettings::InitializeThread(), CQlsSettings::SetThreadIntSetting(kNumber, 1),
          CQlsSettings::GetThreadStrSetting(kNumber, &text, L"default"),
          CQlsSettings::GetDefRegIntSetting(L"Sec", L"Ent", &number, 5)}) {
        EXPECT_FALSE(answer);
    }
    EXPECT_EQ(L"before", text);
    EXPECT_EQ(7, number);
    CQlsSettings::UninitializeThread();
    CQlsSettings::Uninitialize();
}

TEST(ContextsWithoutStores, StartOnlyOnceAndOnlyWithAThreadSlot) {
    EXPECT_FALSE(CQlsSettings::Initialize());
    EXPECT_NE(nullptr, CQlsSettings::GetSettings(-1, false));
    CQlsSettings::Uninitialize();
    const SettingsProcess process;
    EXPECT_FALSE(CQlsSettings::Initialize());
}

using Contexts = SettingsTest;

TEST_F(Contexts, TheLowestFreeIdIsHandedOut) {
    EXPECT_EQ(0, CQlsSettings::CreateThreadSettings());
    EXPECT_EQ(1, CQlsSettings::CreateThreadSettings());
    EXPECT_EQ(0, CQlsSettings::ReleaseThreadSettingsRef(0));
    EXPECT_EQ(0, CQlsSettings::ReleaseThreadSettingsRef(0));
    EXPECT_EQ(0, CQlsSettings::CreateThreadSettings());
    for (int id = 2; id < 40; ++id) EXPECT_EQ(id, CQlsSettings::CreateThreadSettings());
}

TEST_F(Contexts, ReferencesAreCountedAndTheLastTakesTheStoreAlong) {
    const int id = CQlsSettings::CreateThreadSettings();
    EXPECT_EQ(2, CQlsSettings::AddThreadSettingsRef(id));
    CQlsSettings::GetSettings(id, true)->SetStrSetting(kNumber, L"old");
    EXPECT_EQ(1, CQlsSettings::ReleaseThreadSettingsRef(id));
    EXPECT_NE(CQlsSettings::GetSettings(-1, false), CQlsSettings::GetSettings(id, false));
    EXPECT_EQ(0, CQlsSettings::ReleaseThreadSettingsRef(id));
    EXPECT_EQ(CQlsSettings::GetSettings(-1, false), CQlsSettings::GetSettings(id, false));
    EXPECT_EQ(id, CQlsSettings::CreateThreadSettings());
    RWWString text;
    EXPECT_FALSE(CQlsSettings::GetSettings(id, true)->GetStrSetting(kNumber, &text, nullptr));
}

TEST_F(Contexts, IdsThatNameNoContextAreHarmless) {
    const CQlsSettings* const global = CQlsSettings::GetSettings(-1, false);
    ASSERT_NE(nullptr, global);
    for (int id : {-1, 0, 16, 1000000, -2, -2147483647 - 1}) {
        EXPECT_EQ(id == -1, CQlsSettings::AddThreadSettingsRef(id)) << id;
        EXPECT_EQ(id == -1, CQlsSettings::ReleaseThreadSettingsRef(id)) << id;
        EXPECT_EQ(global, CQlsSettings::GetSettings(id, false)) << id;
        EXPECT_EQ(nullptr, CQlsSettings::GetSettings(id, true)) << id;
        EXPECT_FALSE(id != -1 && CQlsSettings::AttachThreadSettings(id)) << id;
    }
}

TEST_F(Contexts, AThreadDetachesAsOftenAsItAttached) {
    const int id = CQlsSettings::CreateThreadSettings(), other = CQlsSettings::CreateThreadSettings();
    EXPECT_FALSE(CQlsSettings::DetachThreadSettings(id));
    EXPECT_TRUE(CQlsSettings::AttachThreadSettings(id) && CQlsSettings::AttachThreadSettings(id));
    EXPECT_FALSE(CQlsSettings::AttachThreadSettings(other) || CQlsSettings::DetachThreadSettings(other));
    for (int attached = 2; attached > 0; --attached) {
        EXPECT_EQ(id, CQlsSettings::GetCurThreadSettings());
        EXPECT_EQ(2, CQlsSettings::ReleaseThreadSettingsRef(id));
        EXPECT_TRUE(CQlsSettings::DetachThreadSettings(id));
    }
    EXPECT_EQ(-1, CQlsSettings::GetCurThreadSettings());
    EXPECT_EQ(0, CQlsSettings::ReleaseThreadSettingsRef(id));
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
    EXPECT_FALSE(CQlsSettings::GetThreadBoolSetting(kNumber, &flag, true) || flag);
    EXPECT_EQ(L"", ThreadText(L"Sec", L"Ent"));
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
    EXPECT_TRUE(CQlsSettings::SetDefRegIntSetting(L"Sec", L"Int", -2) &&
                CQlsSettings::SetDefRegBoolSetting(L"Sec", L"Bool", true) &&
                CQlsSettings::SetDefRegStrSetting(L"Sec", L"Text", L"x"));
    EXPECT_EQ(L"True", GetQLRegStringEx(L"Sec", L"Bool", false));
    EXPECT_EQ(L"x", GetQLRegStringEx(L"Sec", L"Text", false));
    EXPECT_EQ((PrivateRegistry::Stored{REG_DWORD, {0xfe, 0xff, 0xff, 0xff}}), registry_.Get(L"Sec", L"Int"));
    int number = 0;
    EXPECT_TRUE(CQlsSettings::GetThreadRegIntSetting(L"Sec", L"Int", &number) && number == 1);
    EXPECT_TRUE(CQlsSettings::GetDefRegIntSetting(L"Sec", L"Int", &number) && number == -2);
    RWWString text(L"before");
    EXPECT_TRUE(CQlsSettings::SetDefRegStrSetting(L"Sec", L"Text", nullptr));
    EXPECT_EQ(PrivateRegistry::Stored{}, registry_.Get(L"Sec", L"Text"));
    EXPECT_TRUE(CQlsSettings::GetDefRegStrSetting(L"Sec", L"Text", &text, L"default"));
    EXPECT_EQ(L"", text);
}

// Attaches the calling thread, on which the context's value must show.
void SeeInContext(int id, int value) {
    int seen = 0;
    ASSERT_TRUE(CQlsSettings::AttachThreadSettings(id));
    EXPECT_TRUE(CQlsSettings::GetThreadRegIntSetting(L"Own", L"Value", &seen) && seen == value);
}

// One piece of work: a context of its own filled from a document, a helper thread attached to it, and nothing
// of it left behind.
void WorkInContext(int worker, int round) {
    const int value = worker * 1000 + round;
    const std::wstring document = L"{\"Own<-^->Value\":" + std::to_wstring(value) + L"}";
    const int id = CQlsSettings::CreateThreadSettings();
    ASSERT_GE(id, 0);
    EXPECT_TRUE(CQlsSettings::GetSettings(id, true)->SetFromSerializedSettings(document.c_str()));
    SeeInContext(id, value);
    EXPECT_EQ(L"", ThreadText(L"Global", std::to_wstring(worker).c_str()));
    if (round % 25 == 0) {
        OnAnotherThread([&] {
            SeeInContext(id, value);
            EXPECT_TRUE(CQlsSettings::DetachThreadSettings(id));
        });
    }
    EXPECT_EQ(id, CQlsSettings::GetCurThreadSettings());
    CQlsSettings::ReleaseThreadSettingsRef(id);
    EXPECT_TRUE(CQlsSettings::DetachThreadSettings(id));
    EXPECT_EQ(0, CQlsSettings::ReleaseThreadSettingsRef(id));
}

// The store that all threads share: each has its own setting in it and one with all others.
void WorkInGlobalStore(const std::wstring& worker, int round) {
    CQlsSettings& store = *CQlsSettings::GetSettings(-1, false);
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
            const SettingsThread thread;
            for (int round = 0; round < 100; ++round) {
                WorkInContext(worker, round);
                WorkInGlobalStore(std::to_wstring(worker), round);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(0, CQlsSettings::CreateThreadSettings());
    CQlsSettings::GetSettings(-1, false)->ClearSetting(kNumber);
    RWWString document;
    EXPECT_TRUE(CQlsSettings::GetSettings(-1, false)->GetSerializedSettings(&document));
    EXPECT_EQ(
        LR"({"Global<-^->0":"0","Global<-^->1":"1","Global<-^->2":"2","Global<-^->3":"3",)"
        LR"("Global<-^->4":"4","Global<-^->5":"5","Global<-^->6":"6","Global<-^->7":"7"})",
        document);
}

}  // namespace
