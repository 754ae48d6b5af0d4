// Cached preference reads beside a query on a held-open key and beside a bare map with a lock; the first load
// of 500 values beside the bare calls; the memory of a large store.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cwchar>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/unique_handle.h"
#include "platform/win32.h"
#include "settings/preferences.h"
#include "settings/registry.h"
#include "settings/settings_store.h"
#include "settings/thread_slots.h"

namespace {

constexpr wchar_t kSection[] = L"Locations";
constexpr int kEntries = 500;
constexpr int kMaxThreads = 4;

// For the life of the process the current user's registry is a key of this process alone.
class PrivateRegistry {
  public:
    PrivateRegistry() {
        ql::UniqueRegKey key;
        ::RegCreateKeyExW(HKEY_CURRENT_USER, kHome, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.put(),
                          nullptr);
        ::RegOverridePredefKey(HKEY_CURRENT_USER, key.get());
    }
    ~PrivateRegistry() {
        ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        ::RegDeleteTreeW(HKEY_CURRENT_USER, kHome);
    }
    PrivateRegistry(const PrivateRegistry&) = delete;
    PrivateRegistry& operator=(const PrivateRegistry&) = delete;

  private:
    static constexpr wchar_t kHome[] = L"Software\\Registry of the settings benchmark";
};

std::wstring EntryName(int i) {
    return L"Template Files " + std::to_wstring(i);
}

std::wstring EntryText(int i) {
    return L"C:\\Program Files\\Templates\\Group " + std::to_wstring(i);
}

const std::vector<std::wstring>& EntryNames() {
    static const auto names = [] {
        std::vector<std::wstring> all;
        for (int i = 0; i < kEntries; ++i) all.push_back(EntryName(i));
        return all;
    }();
    return names;
}

ql::UniqueRegKey OpenSection(const wchar_t* section) {
    ql::UniqueRegKey key;
    const std::wstring path = std::wstring(L"SOFTWARE\\Quillet\\Author\\") + section;
    ::RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_QUERY_VALUE, key.put());
    return key;
}

// What every measurement stands on: the values in the registry, the started library, a context for each
// thread.
class Scene {
  public:
    Scene() {
        TlsmInitialize();
        CQlsSettings::Initialize();
        for (int i = 0; i < kEntries; ++i)
            WriteQLRegString(kSection, EntryName(i).c_str(), EntryText(i).c_str());
        for (int& context : contexts_) {
            context = CQlsSettings::CreateThreadSettings();
            CQlsSettings* store = CQlsSettings::GetSettings(context, true);
            for (int i = 0; i < kEntries; ++i) {
                store->SetRegStrSetting(kSection, EntryName(i).c_str(), EntryText(i).c_str());
            }
        }
    }
    ~Scene() {
        CQlsSettings::Uninitialize();
        TlsmUninitialize();
    }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    int Context(int thread) const { return contexts_[static_cast<std::size_t>(thread)]; }

  private:
    PrivateRegistry registry_;
    std::array<int, kMaxThreads> contexts_{};
};

const Scene& TheScene() {
    static const Scene scene;
    return scene;
}

// --- cached reads
// ----------------------------------------------------------------------------------------------------

enum class Contexts { kSame, kOwn };

// Each round reads the next entry, so that no single line of memory answers for all.
template <class Read>
void ReadEntries(benchmark::State& state, Read read) {
    const auto& names = EntryNames();
    std::size_t next = static_cast<std::size_t>(state.thread_index()) * 100;
    for (auto _ : state) {
        benchmark::DoNotOptimize(read(names[next]));
        next = next + 1 == names.size() ? 0 : next + 1;
    }
}

template <Contexts kContexts>
void ReadPreference(benchmark::State& state) {
    const int context = TheScene().Context(kContexts == Contexts::kOwn ? state.thread_index() : 0);
    TlsmInitializeThread();
    CQlsSettings::InitializeThread();
    CQlsSettings::AttachThreadSettings(context);
    ReadEntries(state,
                [](const std::wstring& entry) { return GetQLRegString(kSection, entry.c_str(), L""); });
    CQlsSettings::DetachThreadSettings(context);
    CQlsSettings::UninitializeThread();
    TlsmUninitializeThread();
}

void QueryOpenKey(benchmark::State& state) {
    TheScene();
    const ql::UniqueRegKey key = OpenSection(kSection);
    ReadEntries(state, [&](const std::wstring& entry) {
        wchar_t text[512];
        DWORD bytes = sizeof text;
        DWORD type = 0;
        ::RegQueryValueExW(key.get(), entry.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes);
        return RWWString(text, bytes / sizeof(wchar_t) - 1);
    });
}

// The least that answers the same question: a section and an entry as two zero-ended texts, and a copy of the
// text.
struct BareMap {
    std::mutex lock;
    std::unordered_map<std::wstring, std::wstring> texts;

    BareMap() {
        for (int i = 0; i < kEntries; ++i) texts.emplace(Key(kSection, EntryName(i).c_str()), EntryText(i));
    }
    static std::wstring Key(const wchar_t* section, const wchar_t* entry) {
        return std::wstring(section).append(L"<-^->").append(entry);
    }
    std::wstring Read(const wchar_t* section, const wchar_t* entry) {
        const std::wstring key = Key(section, entry);
        const std::lock_guard<std::mutex> guard(lock);
        return texts.find(key)->second;
    }
};

// The same without putting a key together: one section, and entries that are known as strings.
struct BarestMap {
    std::mutex lock;
    std::unordered_map<std::wstring, std::wstring> texts;

    BarestMap() {
        for (int i = 0; i < kEntries; ++i) texts.emplace(EntryName(i), EntryText(i));
    }
    std::wstring Read(const std::wstring& entry) {
        const std::lock_guard<std::mutex> guard(lock);
        return texts.find(entry)->second;
    }
};

template <class Map>
std::array<Map, kMaxThreads>& Maps() {
    static std::array<Map, kMaxThreads> maps;
    return maps;
}

template <Contexts kContexts>
void ReadBareMap(benchmark::State& state) {
    BareMap& map =
        Maps<BareMap>()[kContexts == Contexts::kOwn ? static_cast<std::size_t>(state.thread_index()) : 0];
    ReadEntries(state, [&](const std::wstring& entry) { return map.Read(kSection, entry.c_str()); });
}

template <Contexts kContexts>
void ReadBarestMap(benchmark::State& state) {
    BarestMap& map =
        Maps<BarestMap>()[kContexts == Contexts::kOwn ? static_cast<std::size_t>(state.thread_index()) : 0];
    ReadEntries(state, [&](const std::wstring& entry) { return map.Read(entry); });
}

// --- first load
// ------------------------------------------------------------------------------------------------------

void LoadStore(benchmark::State& state) {
    TheScene();
    for (auto _ : state) {
        CQlsSettings store;
        RWWString text;
        for (const std::wstring& entry : EntryNames()) {
            store.GetRegStrSetting(kSection, entry.c_str(), &text);
            benchmark::DoNotOptimize(text.data());
        }
    }
}

void LoadRaw(benchmark::State& state) {
    TheScene();
    for (auto _ : state) {
        for (const std::wstring& entry : EntryNames()) {
            const ql::UniqueRegKey key = OpenSection(kSection);
            wchar_t text[512];
            DWORD bytes = sizeof text;
            DWORD type = 0;
            ::RegQueryValueExW(key.get(), entry.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(text),
                               &bytes);
            benchmark::DoNotOptimize(text);
        }
    }
}

// --- memory
// ----------------------------------------------------------------------------------------------------------

// What the process's heaps have handed out.
std::size_t BytesInUse() {
    std::size_t bytes = 0;
    HANDLE heaps[64];
    const DWORD count = ::GetProcessHeaps(std::size(heaps), heaps);
    for (DWORD i = 0; i < count && i < std::size(heaps); ++i) {
        PROCESS_HEAP_ENTRY entry = {};
        while (::HeapWalk(heaps[i], &entry)) {
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData + entry.cbOverhead;
        }
    }
    return bytes;
}

void HoldSettings(benchmark::State& state) {
    constexpr int kSettings = 10000;
    for (auto _ : state) {
        std::size_t texts = 0;
        const std::size_t before = BytesInUse();
        CQlsSettings store;
        for (int i = 0; i < kSettings; ++i) {
            store.SetRegStrSetting(kSection, EntryName(i).c_str(), EntryText(i).c_str());
            texts += (std::wcslen(kSection) + EntryName(i).size() + EntryText(i).size()) * sizeof(wchar_t);
        }
        state.counters["held"] = static_cast<double>(BytesInUse() - before);
        state.counters["texts"] = static_cast<double>(texts);
    }
}

#define QL_READS(name, function)                                \
    BENCHMARK(function)->Name(name)->Threads(1)->UseRealTime(); \
    BENCHMARK(function)->Name(name)->Threads(kMaxThreads)->UseRealTime()

QL_READS("cached read, same context/ours", ReadPreference<Contexts::kSame>);
QL_READS("cached read, same context/held-open key", QueryOpenKey);
QL_READS("cached read, same context/bare map, key made", ReadBareMap<Contexts::kSame>);
QL_READS("cached read, same context/bare map, key given", ReadBarestMap<Contexts::kSame>);
QL_READS("cached read, own contexts/ours", ReadPreference<Contexts::kOwn>);
QL_READS("cached read, own contexts/held-open key", QueryOpenKey);
QL_READS("cached read, own contexts/bare map, key made", ReadBareMap<Contexts::kOwn>);
QL_READS("cached read, own contexts/bare map, key given", ReadBarestMap<Contexts::kOwn>);
#undef QL_READS
BENCHMARK(LoadStore)->Name("first load of 500/ours")->Unit(benchmark::kMillisecond);
BENCHMARK(LoadRaw)->Name("first load of 500/open, query, close")->Unit(benchmark::kMillisecond);
BENCHMARK(HoldSettings)->Name("store of 10,000 settings/bytes")->Iterations(1);

}  // namespace
