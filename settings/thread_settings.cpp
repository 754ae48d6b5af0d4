// The static members of CQlsSettings: the table of stores, and which of them a thread uses.
#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "settings/locked_settings.h"
#include "settings/registry_values.h"
#include "settings/settings_store.h"
#include "settings/thread_slots.h"
#include "settings/thread_store.h"

namespace {

constexpr int kNoContext = -1;
constexpr int kUncountedReference = 1;  // what counting on no context answers
constexpr std::size_t kFirstCapacity = 16;

std::shared_ptr<CQlsSettings> NewStore() {
    auto store = std::make_shared<CQlsSettings>();
    ql::LockedSettings::Of(*store);  // throws when that much memory was not there
    return store;
}

struct Context {
    int refCount = 0;
    bool isListed = false;                   // among the free ids
    std::shared_ptr<CQlsSettings> settings;  // made when first needed
};

// What a thread knows of itself; owned by the thread's slot, and touched by that thread alone.
struct ThreadRecord {
    int settingsId = kNoContext;
    int attachCount = 0;
    unsigned run = 0;  // of the table, in which the thread attached

    // The store that reads go to, as of that version of the table: reading threads that share nothing but the
    // table must not wait for each other. It stays alive until the next read finds a newer version.
    std::shared_ptr<CQlsSettings> store;
    unsigned version = 0;
};

// The global store and the contexts. The lock is taken before any store's own, and held by every writer until
// registry and stores agree.
struct ContextTable {
    ql::CriticalSection lock;
    std::shared_ptr<CQlsSettings> global QL_GUARDED_BY(lock);
    std::vector<Context> contexts QL_GUARDED_BY(lock);  // by id
    std::vector<int> freeIds QL_GUARDED_BY(lock);       // a heap, the lowest on top; room for every id
    unsigned run QL_GUARDED_BY(lock) = 1;               // from one Uninitialize to the next

    // Changed under the lock, read without it.
    std::atomic<unsigned long> slot = kTlsmNoSlot;
    std::atomic<bool> hasGlobal = false;
    std::atomic<unsigned> version = 1;  // a new one whenever some thread's store may be another

    Context* Find(int id) QL_REQUIRES(lock) {
        return id >= 0 && static_cast<std::size_t>(id) < contexts.size()
                   ? &contexts[static_cast<std::size_t>(id)]
                   : nullptr;
    }

    ThreadRecord* Record() const { return static_cast<ThreadRecord*>(TlsmGetValue(slot)); }
    bool Keep(ThreadRecord* record) const { return TlsmSetValue(slot, record); }

    // The thread's record if it is attached; one whose id names no context of this run counts for none.
    ThreadRecord* Attached() QL_REQUIRES(lock) {
        ThreadRecord* const record = Record();
        return record && record->attachCount > 0 && record->run == run && Find(record->settingsId) ? record
                                                                                                   : nullptr;
    }

    // The thread's record, a new one when there is none; null for a thread that is not initialised.
    ThreadRecord* RecordToAttach() {
        if (ThreadRecord* const record = Record()) return record;
        auto record = std::make_unique<ThreadRecord>();
        return Keep(record.get()) ? record.release() : nullptr;
    }

    int AddReference(int id) QL_REQUIRES(lock) {
        if (id == kNoContext) return kUncountedReference;
        Context* context = Find(id);
        return context ? ++context->refCount : 0;
    }

    int Release(int id) QL_REQUIRES(lock) {
        if (id == kNoContext) return kUncountedReference;
        Context* context = Find(id);
        if (!context || context->refCount == 0) return 0;
        if (--context->refCount > 0) return context->refCount;
        context->settings.reset();
        ++version;
        if (!std::exchange(context->isListed, true)) {
            freeIds.push_back(id);
            std::push_heap(freeIds.begin(), freeIds.end(), std::greater<>());
        }
        return 0;
    }

    // The lowest id without a reference. One on the list may have been given a reference again.
    int TakeId() QL_REQUIRES(lock) {
        while (!freeIds.empty()) {
            std::pop_heap(freeIds.begin(), freeIds.end(), std::greater<>());
            const int id = freeIds.back();
            freeIds.pop_back();
            Find(id)->isListed = false;
            if (Find(id)->refCount == 0) return id;
        }
        if (freeIds.capacity() <= contexts.size()) freeIds.reserve(2 * contexts.size() + kFirstCapacity);
        contexts.emplace_back();
        return static_cast<int>(contexts.size() - 1);
    }

    std::shared_ptr<CQlsSettings> StoreOf(int id, bool create) QL_REQUIRES(lock) {
        Context* context = Find(id);
        if (!context) return create ? nullptr : global;
        if (!context->settings && create) {
            context->settings = NewStore();
            ++version;
        }
        return context->settings ? context->settings : global;
    }

    std::shared_ptr<CQlsSettings> ThreadStore(bool create) QL_REQUIRES(lock) {
        const ThreadRecord* const record = Attached();
        return record ? StoreOf(record->settingsId, create) : global;
    }
};

ContextTable g_table;

// The store that the calling thread reads; null when there is none. A thread with a record takes the lock
// only when the table has changed.
std::shared_ptr<CQlsSettings> StoreToRead(ThreadRecord* record) {
    ql::CriticalSectionGuard guard(g_table.lock);
    auto store = g_table.ThreadStore(false);
    if (record) {
        record->store = store;
        record->version = g_table.version;
    }
    return store;
}

// Calls a member on the store that the calling thread reads; false when there is none.
template <class Reader, class... Arguments>
bool AskThreadStore(Reader reader, Arguments... arguments) {
    ThreadRecord* const record = g_table.Record();
    if (record && record->version == g_table.version)
        return record->store && std::invoke(reader, *record->store, arguments...);
    const auto store = StoreToRead(record);
    return store && std::invoke(reader, *store, arguments...);
}

template <class... Parameters, class... Arguments>
bool ReadFromThreadStore(bool (CQlsSettings::*member)(Parameters...), Arguments... arguments) {
    return ql::FailureIfThrown(false, [&] { return AskThreadStore(member, arguments...); });
}

// Calls a member on the store that the calling thread writes.
template <class... Parameters, class... Arguments>
bool WriteToThreadStore(bool (CQlsSettings::*member)(Parameters...), Arguments... arguments) {
    return ql::FailureIfThrown(false, [&] {
        ql::CriticalSectionGuard guard(g_table.lock);
        const auto store = g_table.ThreadStore(true);
        return store && (*store.*member)(arguments...);
    });
}

template <class... Parameters, class... Arguments>
bool ReadFromGlobalStore(bool (CQlsSettings::*member)(Parameters...), Arguments... arguments) {
    const auto store = [] {
        ql::CriticalSectionGuard guard(g_table.lock);
        return g_table.global;
    }();
    return store && (*store.*member)(arguments...);
}

// Whether the store took the value. One that had no memory for it forgets what it held, so that the next
// reading finds what the registry holds now.
template <class Value>
bool SetOrForget(CQlsSettings& store, bool (CQlsSettings::*member)(const wchar_t*, const wchar_t*, Value),
                 const ql::SettingKey& key, const wchar_t* section, const wchar_t* entry, Value value) {
    if ((store.*member)(section, entry, value)) return true;
    ql::LockedSettings& state = ql::LockedSettings::Of(store);
    const ql::WriterGuard guard(state.lock);
    const ql::Setting* const setting = state.settings.Find(key);
    if (setting && setting->type() == ql::kSettingType<Value>) state.settings.Remove(key);
    return false;
}

template <class Value>
using Setter = bool (CQlsSettings::*)(const wchar_t*, const wchar_t*, Value);

// The registry first, then the global store.
template <class Value>
bool WriteDefault(Setter<Value> member, const wchar_t* section, const wchar_t* entry, Value value) {
    return ql::FailureIfThrown(false, [&] {
        const ql::SettingKey key(section, entry);  // what needs memory comes before what changes something
        ql::CriticalSectionGuard guard(g_table.lock);
        ql::WriteToRegistry(section, entry, value);
        return g_table.global && SetOrForget(*g_table.global, member, key, section, entry, value);
    });
}

template <class Value>
void WriteDefaultAndThread(Setter<Value> member, const wchar_t* section, const wchar_t* entry, Value value) {
    const ql::SettingKey key(section, entry);
    ql::CriticalSectionGuard guard(g_table.lock);
    const auto own = g_table.ThreadStore(true);
    ql::WriteToRegistry(section, entry, value);
    if (!g_table.global) return;
    SetOrForget(*g_table.global, member, key, section, entry, value);
    if (own != g_table.global) SetOrForget(*own, member, key, section, entry, value);
}

bool HasWritableStore() {
    return ql::FailureIfThrown(false, [] {
        ql::CriticalSectionGuard guard(g_table.lock);
        return g_table.ThreadStore(true) != nullptr;
    });
}

}  // namespace

void ql::WritePreference(const wchar_t* section, const wchar_t* entry, const wchar_t* text) {
    if (text) return WriteDefaultAndThread(&CQlsSettings::SetRegStrSetting, section, entry, text);
    const ql::SettingKey key(section, entry);
    ql::CriticalSectionGuard guard(g_table.lock);
    const auto own = g_table.ThreadStore(true);
    WriteToRegistry(section, entry, text);
    if (!own) return;
    LockedSettings& state = LockedSettings::Of(*own);
    const WriterGuard writer(state.lock);
    state.settings.Remove(key);  // which asks for no memory
}

void ql::WritePreference(const wchar_t* section, const wchar_t* entry, int value) {
    WriteDefaultAndThread(&CQlsSettings::SetRegIntSetting, section, entry, value);
}

void ql::WritePreference(const wchar_t* section, const wchar_t* entry, bool value) {
    WriteDefaultAndThread(&CQlsSettings::SetRegBoolSetting, section, entry, value);
}

bool ql::ReadThreadText(const wchar_t* section, const wchar_t* entry, RWWString* value,
                        const wchar_t* defaultValue) {
    return AskThreadStore(ql::ReadStoreText, section, entry, value, defaultValue);
}

bool ql::HasSettingsStores() {
    return g_table.hasGlobal;
}

ql::ThreadStores ql::StoresOfThread() {
    ql::CriticalSectionGuard guard(g_table.lock);
    auto store = g_table.ThreadStore(false);
    return {store == g_table.global ? nullptr : std::move(store), g_table.global};
}

bool CQlsSettings::Initialize() {
    return ql::FailureIfThrown(false, [] {
        ql::CriticalSectionGuard guard(g_table.lock);
        if (g_table.slot != kTlsmNoSlot) return false;
        if (!g_table.global) {
            g_table.global = NewStore();
            g_table.hasGlobal = true;
            ++g_table.version;
        }
        g_table.slot = TlsmAlloc();
        return g_table.slot != kTlsmNoSlot;
    });
}

void CQlsSettings::Uninitialize() {
    ql::CriticalSectionGuard guard(g_table.lock);
    TlsmFree(g_table.slot.exchange(kTlsmNoSlot));
    g_table.hasGlobal = false;
    g_table.global.reset();
    g_table.contexts.clear();
    g_table.freeIds.clear();
    ++g_table.run;
    ++g_table.version;
}

bool CQlsSettings::InitializeThread() {
    if (!g_table.Keep(nullptr)) return false;
    return ql::FailureIfThrown(true, [] { return g_table.RecordToAttach() != nullptr; });
}

void CQlsSettings::UninitializeThread() {
    delete g_table.Record();
    g_table.Keep(nullptr);
}

int CQlsSettings::CreateThreadSettings() {
    return ql::FailureIfThrown(kNoContext, [] {
        ql::CriticalSectionGuard guard(g_table.lock);
        if (!g_table.global) return kNoContext;
        const int id = g_table.TakeId();
        *g_table.Find(id) = Context{1, false, nullptr};
        ++g_table.version;  // threads may still be attached to the id
        return id;
    });
}

int CQlsSettings::AddThreadSettingsRef(int id) {
    ql::CriticalSectionGuard guard(g_table.lock);
    return g_table.AddReference(id);
}

int CQlsSettings::ReleaseThreadSettingsRef(int id) {
    ql::CriticalSectionGuard guard(g_table.lock);
    return g_table.Release(id);
}

int CQlsSettings::GetCurThreadSettings() {
    ql::CriticalSectionGuard guard(g_table.lock);
    const ThreadRecord* const record = g_table.Attached();
    if (!record) return kNoContext;
    g_table.AddReference(record->settingsId);
    return record->settingsId;
}

bool CQlsSettings::AttachThreadSettings(int id) {
    return ql::FailureIfThrown(false, [id] {
        ql::CriticalSectionGuard guard(g_table.lock);
        if (ThreadRecord* const record = g_table.Attached()) {
            if (record->settingsId != id) return false;
            ++record->attachCount;
            return true;
        }
        if (id != kNoContext && !g_table.Find(id)) return false;
        ThreadRecord* const record = g_table.RecordToAttach();
        if (!record) return false;
        *record = ThreadRecord{id, 1, g_table.run, nullptr};
        g_table.AddReference(id);
        return true;
    });
}

bool CQlsSettings::DetachThreadSettings(int id) {
    ql::CriticalSectionGuard guard(g_table.lock);
    ThreadRecord* const record = g_table.Attached();
    if (!record) return id == kNoContext && g_table.Record();
    if (record->settingsId != id) return false;
    if (--record->attachCount > 0) return true;
    *record = ThreadRecord{};
    g_table.Release(id);
    return true;
}

CQlsSettings* CQlsSettings::GetSettings(int id, bool create) {
    return ql::FailureIfThrown(static_cast<CQlsSettings*>(nullptr), [&] {
        ql::CriticalSectionGuard guard(g_table.lock);
        return g_table.StoreOf(id, create).get();
    });
}

bool CQlsSettings::SetThreadBoolSetting(QlSetting, bool) {
    return HasWritableStore();  // the store keeps no such setting
}

bool CQlsSettings::SetThreadIntSetting(QlSetting, int) {
    return HasWritableStore();  // the store keeps no such setting
}

bool CQlsSettings::SetThreadStrSetting(QlSetting setting, const wchar_t* value) {
    return WriteToThreadStore(&CQlsSettings::SetStrSetting, setting, value);
}

bool CQlsSettings::GetThreadBoolSetting(QlSetting setting, bool* value, bool defaultValue) {
    return ReadFromThreadStore(&CQlsSettings::GetBoolSetting, setting, value, defaultValue);
}

bool CQlsSettings::GetThreadIntSetting(QlSetting setting, int* value, int defaultValue) {
    return ReadFromThreadStore(&CQlsSettings::GetIntSetting, setting, value, defaultValue);
}

bool CQlsSettings::GetThreadStrSetting(QlSetting setting, RWWString* value, const wchar_t* defaultValue) {
    return ReadFromThreadStore(&CQlsSettings::GetStrSetting, setting, value, defaultValue);
}

bool CQlsSettings::SetThreadRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool value) {
    return WriteToThreadStore(&CQlsSettings::SetRegBoolSetting, section, entry, value);
}

bool CQlsSettings::SetThreadRegIntSetting(const wchar_t* section, const wchar_t* entry, int value) {
    return WriteToThreadStore(&CQlsSettings::SetRegIntSetting, section, entry, value);
}

bool CQlsSettings::SetThreadRegStrSetting(const wchar_t* section, const wchar_t* entry,
                                          const wchar_t* value) {
    return WriteToThreadStore(&CQlsSettings::SetRegStrSetting, section, entry, value);
}

bool CQlsSettings::GetThreadRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool* value,
                                           bool defaultValue) {
    return ReadFromThreadStore(&CQlsSettings::GetRegBoolSetting, section, entry, value, defaultValue);
}

bool CQlsSettings::GetThreadRegIntSetting(const wchar_t* section, const wchar_t* entry, int* value,
                                          int defaultValue) {
    return ReadFromThreadStore(&CQlsSettings::GetRegIntSetting, section, entry, value, defaultValue);
}

bool CQlsSettings::GetThreadRegStrSetting(const wchar_t* section, const wchar_t* entry, RWWString* value,
                                          const wchar_t* defaultValue) {
    return ReadFromThreadStore(&CQlsSettings::GetRegStrSetting, section, entry, value, defaultValue);
}

bool CQlsSettings::ClearThreadRegSetting(const wchar_t* section, const wchar_t* entry) {
    return WriteToThreadStore(&CQlsSettings::ClearRegSetting, section, entry);
}

bool CQlsSettings::SetDefRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool value) {
    return WriteDefault(&CQlsSettings::SetRegBoolSetting, section, entry, value);
}

bool CQlsSettings::SetDefRegIntSetting(const wchar_t* section, const wchar_t* entry, int value) {
    return WriteDefault(&CQlsSettings::SetRegIntSetting, section, entry, value);
}

bool CQlsSettings::SetDefRegStrSetting(const wchar_t* section, const wchar_t* entry, const wchar_t* value) {
    return WriteDefault(&CQlsSettings::SetRegStrSetting, section, entry, value);
}

bool CQlsSettings::GetDefRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool* value,
                                        bool defaultValue) {
    return ReadFromGlobalStore(&CQlsSettings::GetRegBoolSetting, section, entry, value, defaultValue);
}

bool CQlsSettings::GetDefRegIntSetting(const wchar_t* section, const wchar_t* entry, int* value,
                                       int defaultValue) {
    return ReadFromGlobalStore(&CQlsSettings::GetRegIntSetting, section, entry, value, defaultValue);
}

bool CQlsSettings::GetDefRegStrSetting(const wchar_t* section, const wchar_t* entry, RWWString* value,
                                       const wchar_t* defaultValue) {
    return ReadFromGlobalStore(&CQlsSettings::GetRegStrSetting, section, entry, value, defaultValue);
}
