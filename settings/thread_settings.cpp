#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "platform/critical_section.h"
#include "platform/failure.h"
#include "settings/registry_writers.h"
#include "settings/settings_store.h"
#include "settings/thread_slots.h"

namespace {

constexpr int kNoContext = -1;
constexpr int kUncountedReference = 1;  // what counting on no context answers
constexpr std::size_t kFirstCapacity = 16;

struct Context {
    int refCount = 0;
    std::shared_ptr<CQlsSettings> settings;  // made when first needed
};

// What a thread knows of the context it is attached to; owned by the thread's slot, and touched by that thread alone.
struct Attachment {
    int settingsId;
    int attachCount;

    // The store that reads go to, as of that version of the table: reading threads that share nothing but the table
    // must not wait for each other. It stays alive until the next read finds a newer version.
    std::shared_ptr<CQlsSettings> store;
    unsigned version = 0;
};

// The global store and the contexts. The lock is taken before any store's own.
struct ContextTable {
    ql::CriticalSection lock;
    std::shared_ptr<CQlsSettings> global QL_GUARDED_BY(lock);
    std::vector<Context> contexts QL_GUARDED_BY(lock);  // by id

    // Changed under the lock, read without it.
    std::atomic<unsigned long> slot = kTlsmNoSlot;
    std::atomic<unsigned> version = 1;  // a new one whenever some thread's store may be another

    Context* Find(int id) QL_REQUIRES(lock) {
        return id >= 0 && static_cast<std::size_t>(id) < contexts.size()
                   ? &contexts[static_cast<std::size_t>(id)]
                   : nullptr;
    }

    Attachment* Current() const { return static_cast<Attachment*>(TlsmGetValue(slot)); }
    bool Attach(Attachment* attachment) const { return TlsmSetValue(slot, attachment); }
    void DropAttachment() const {
        delete Current();
        Attach(nullptr);
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
        if (--context->refCount == 0) {
            context->settings.reset();
            ++version;
        }
        return context->refCount;
    }

    std::shared_ptr<CQlsSettings> StoreOf(int id, bool create) QL_REQUIRES(lock) {
        Context* context = Find(id);
        if (!context) return create ? nullptr : global;
        if (!context->settings && create) {
            context->settings = std::make_shared<CQlsSettings>();
            ++version;
        }
        return context->settings ? context->settings : global;
    }

    std::shared_ptr<CQlsSettings> ThreadStore(bool create) QL_REQUIRES(lock) {
        const Attachment* attachment = Current();
        auto store = attachment ? StoreOf(attachment->settingsId, create) : nullptr;
        return store ? store : global;
    }
};

ContextTable g_table;

// For one call on the calling thread's store; null when there is none.
std::shared_ptr<CQlsSettings> WritableStore() {
    ql::CriticalSectionGuard guard(g_table.lock);
    return g_table.ThreadStore(true);
}

std::shared_ptr<CQlsSettings> ReadableStore() {
    ql::CriticalSectionGuard guard(g_table.lock);
    return g_table.ThreadStore(false);
}

std::shared_ptr<CQlsSettings> GlobalStore() {
    ql::CriticalSectionGuard guard(g_table.lock);
    return g_table.global;
}

// The same store as ReadableStore's, without the lock unless the table has changed.
CQlsSettings* KnownStore(Attachment& attachment) {
    if (attachment.version != g_table.version) {
        ql::CriticalSectionGuard guard(g_table.lock);
        attachment.store = g_table.ThreadStore(false);
        attachment.version = g_table.version;
    }
    return attachment.store.get();
}

template <class... Parameters, class... Arguments>
bool OnStore(CQlsSettings* store, bool (CQlsSettings::*member)(Parameters...), Arguments... arguments) {
    return store && (store->*member)(arguments...);
}

// Each calls a member on the store; false when there is none.
template <class... Parameters, class... Arguments>
bool ReadFromThreadStore(bool (CQlsSettings::*member)(Parameters...), Arguments... arguments) {
    return ql::FailureIfThrown(false, [&] {
        Attachment* const attachment = g_table.Current();
        if (attachment) return OnStore(KnownStore(*attachment), member, arguments...);
        return OnStore(ReadableStore().get(), member, arguments...);
    });
}

template <class... Parameters, class... Arguments>
bool WriteToThreadStore(bool (CQlsSettings::*member)(Parameters...), Arguments... arguments) {
    return ql::FailureIfThrown(false, [&] { return OnStore(WritableStore().get(), member, arguments...); });
}

template <class... Parameters, class... Arguments>
bool OnGlobalStore(bool (CQlsSettings::*member)(Parameters...), Arguments... arguments) {
    return OnStore(GlobalStore().get(), member, arguments...);
}

bool HasWritableStore() {
    return ql::FailureIfThrown(false, [] { return WritableStore() != nullptr; });
}

}  // namespace

bool CQlsSettings::Initialize() {
    return ql::FailureIfThrown(false, [] {
        ql::CriticalSectionGuard guard(g_table.lock);
        if (g_table.slot != kTlsmNoSlot) return false;
        g_table.global = std::make_shared<CQlsSettings>();
        g_table.contexts.clear();
        g_table.contexts.reserve(kFirstCapacity);
        ++g_table.version;
        g_table.slot = TlsmAlloc();
        return g_table.slot != kTlsmNoSlot;
    });
}

void CQlsSettings::Uninitialize() {
    ql::CriticalSectionGuard guard(g_table.lock);
    TlsmFree(g_table.slot.exchange(kTlsmNoSlot));
    g_table.global.reset();
    g_table.contexts.clear();
    ++g_table.version;
}

bool CQlsSettings::InitializeThread() {
    return g_table.Attach(nullptr);
}

void CQlsSettings::UninitializeThread() {
    g_table.DropAttachment();
}

int CQlsSettings::CreateThreadSettings() {
    return ql::FailureIfThrown(kNoContext, [] {
        ql::CriticalSectionGuard guard(g_table.lock);
        if (!g_table.global) return kNoContext;
        auto& contexts = g_table.contexts;
        auto free =
            std::find_if(contexts.begin(), contexts.end(), [](const Context& c) { return c.refCount == 0; });
        if (free == contexts.end()) free = contexts.emplace(free);
        *free = Context{1, nullptr};
        return static_cast<int>(free - contexts.begin());
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
    const Attachment* attachment = g_table.Current();
    if (!attachment) return kNoContext;
    g_table.AddReference(attachment->settingsId);
    return attachment->settingsId;
}

bool CQlsSettings::AttachThreadSettings(int id) {
    return ql::FailureIfThrown(false, [id] {
        ql::CriticalSectionGuard guard(g_table.lock);
        if (Attachment* attachment = g_table.Current()) {
            if (attachment->settingsId != id) return false;
            ++attachment->attachCount;
            return true;
        }
        if (id != kNoContext && !g_table.Find(id)) return false;
        auto attachment = std::make_unique<Attachment>(Attachment{id, 1, nullptr});
        if (!g_table.Attach(attachment.get())) return false;
        static_cast<void>(attachment.release());  // the slot owns it now
        g_table.AddReference(id);
        return true;
    });
}

bool CQlsSettings::DetachThreadSettings(int id) {
    ql::CriticalSectionGuard guard(g_table.lock);
    Attachment* attachment = g_table.Current();
    if (!attachment || attachment->settingsId != id) return false;
    if (--attachment->attachCount > 0) return true;
    g_table.DropAttachment();
    g_table.Release(id);
    return true;
}

CQlsSettings* CQlsSettings::GetSettings(int id, bool create) {
    return ql::FailureIfThrown(nullptr, [&] {
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
    ql::WriteRegistryBoolean(section, entry, value);
    return OnGlobalStore(&CQlsSettings::SetRegBoolSetting, section, entry, value);
}

bool CQlsSettings::SetDefRegIntSetting(const wchar_t* section, const wchar_t* entry, int value) {
    ql::WriteRegistryInteger(section, entry, value);
    return OnGlobalStore(&CQlsSettings::SetRegIntSetting, section, entry, value);
}

bool CQlsSettings::SetDefRegStrSetting(const wchar_t* section, const wchar_t* entry, const wchar_t* value) {
    ql::WriteRegistryText(section, entry, value);
    return OnGlobalStore(&CQlsSettings::SetRegStrSetting, section, entry, value);
}

bool CQlsSettings::GetDefRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool* value,
                                        bool defaultValue) {
    return OnGlobalStore(&CQlsSettings::GetRegBoolSetting, section, entry, value, defaultValue);
}

bool CQlsSettings::GetDefRegIntSetting(const wchar_t* section, const wchar_t* entry, int* value,
                                       int defaultValue) {
    return OnGlobalStore(&CQlsSettings::GetRegIntSetting, section, entry, value, defaultValue);
}

bool CQlsSettings::GetDefRegStrSetting(const wchar_t* section, const wchar_t* entry, RWWString* value,
                                       const wchar_t* defaultValue) {
    return OnGlobalStore(&CQlsSettings::GetRegStrSetting, section, entry, value, defaultValue);
}
