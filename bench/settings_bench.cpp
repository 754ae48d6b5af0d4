// Cached preference reads beside a query on a held-open key and beside a bare map with a lock; the first load
// of 500 values beside the bare calls; the memory of a large store.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cwchar>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
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
constexpr wchar_t kIntegerSection[] = L"Integers";
constexpr wchar_t kBooleanSection[] = L"Booleans";
constexpr wchar_t kAbsentSection[] = L"Elsewhere";
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
                store->SetRegIntSetting(kIntegerSection, EntryName(i).c_str(), i);
                store->SetRegBoolSetting(kBooleanSection, EntryName(i).c_str(), i % 2 == 0);
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
constexpr auto kSame = Contexts::kSame;
constexpr auto kOwn = Contexts::kOwn;

template <Contexts kContexts>
int ContextIndex(const benchmark::State& state) {
    return kContexts == Contexts::kOwn ? state.thread_index() : 0;
}

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

class Attached {
  public:
    explicit Attached(int context) : context_(context) {
        TlsmInitializeThread();
        CQlsSettings::InitializeThread();
        CQlsSettings::AttachThreadSettings(context_);
    }
    ~Attached() {
        CQlsSettings::DetachThreadSettings(context_);
        CQlsSettings::UninitializeThread();
        TlsmUninitializeThread();
    }
    Attached(const Attached&) = delete;
    Attached& operator=(const Attached&) = delete;

  private:
    int context_;
};

// Into a text that the caller keeps, as a query fills a buffer that the caller keeps.
template <Contexts kContexts>
void ReadIntoText(benchmark::State& state) {
    const Attached attached(TheScene().Context(ContextIndex<kContexts>(state)));
    RWWString text;
    ReadEntries(state, [&](const std::wstring& entry) {
        CQlsSettings::GetThreadRegStrSetting(kSection, entry.c_str(), &text);
        return text.data();
    });
}

// Known as absent after the first round.
template <Contexts kContexts>
void ReadAbsentText(benchmark::State& state) {
    const Attached attached(TheScene().Context(ContextIndex<kContexts>(state)));
    RWWString text;
    ReadEntries(state, [&](const std::wstring& entry) {
        CQlsSettings::GetThreadRegStrSetting(kAbsentSection, entry.c_str(), &text);
        return text.data();
    });
}

template <Contexts kContexts>
void ReadInteger(benchmark::State& state) {
    const Attached attached(TheScene().Context(ContextIndex<kContexts>(state)));
    ReadEntries(state,
                [](const std::wstring& entry) { return GetQLRegInt(kIntegerSection, entry.c_str(), -1); });
}

template <Contexts kContexts>
void ReadBoolean(benchmark::State& state) {
    const Attached attached(TheScene().Context(ContextIndex<kContexts>(state)));
    ReadEntries(
        state, [](const std::wstring& entry) { return GetQLRegBool(kBooleanSection, entry.c_str(), false); });
}

template <Contexts kContexts>
void ReadNewText(benchmark::State& state) {
    const Attached attached(TheScene().Context(ContextIndex<kContexts>(state)));
    ReadEntries(state,
                [](const std::wstring& entry) { return GetQLRegString(kSection, entry.c_str(), L""); });
}

// The first thread writes an entry again and again, which every read of the others may meet.
template <class Write, class Read>
void ReadBesideAWriter(benchmark::State& state, Write write, Read read) {
    if (state.thread_index() > 0) return ReadEntries(state, read);
    for (auto _ : state) write();
}

void ReadIntegerBesideAWriter(benchmark::State& state) {
    const Attached attached(TheScene().Context(0));
    ReadBesideAWriter(
        state, [] { CQlsSettings::SetThreadRegIntSetting(kIntegerSection, EntryName(0).c_str(), 1); },
        [](const std::wstring& entry) { return GetQLRegInt(kIntegerSection, entry.c_str(), -1); });
}

void QueryOpenKey(benchmark::State& state) {
    TheScene();
    const ql::UniqueRegKey key = OpenSection(kSection);
    wchar_t text[512];
    ReadEntries(state, [&](const std::wstring& entry) {
        DWORD bytes = sizeof text;
        DWORD type = 0;
        ::RegQueryValueExW(key.get(), entry.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes);
        return text[0];
    });
}

// The least that answers the same question: a section and an entry as two zero-ended texts, put together as
// the key.
struct MapOfMadeKeys {
    std::mutex lock;
    std::unordered_map<std::wstring, std::wstring> texts;

    MapOfMadeKeys() {
        for (int i = 0; i < kEntries; ++i) texts.emplace(Key(kSection, EntryName(i).c_str()), EntryText(i));
    }
    static std::wstring Key(const wchar_t* section, const wchar_t* entry) {
        return std::wstring(section).append(L"<-^->").append(entry);
    }
    void Read(const std::wstring& entry, std::wstring& text) {
        const std::wstring key = Key(kSection, entry.c_str());
        const std::lock_guard<std::mutex> guard(lock);
        text = texts.find(key)->second;
    }
};

// Less than that: one section alone, and entries that are strings already.
struct MapOfGivenKeys {
    std::mutex lock;
    std::unordered_map<std::wstring, std::wstring> texts;

    MapOfGivenKeys() {
        for (int i = 0; i < kEntries; ++i) texts.emplace(EntryName(i), EntryText(i));
    }
    void Read(const std::wstring& entry, std::wstring& text) {
        const std::lock_guard<std::mutex> guard(lock);
        text = texts.find(entry)->second;
    }
};

// The same for values that are copied in a register.
template <class Value>
struct MapOfValues {
    std::mutex lock;
    std::unordered_map<std::wstring, Value> values;

    MapOfValues() {
        for (int i = 0; i < kEntries; ++i) values.emplace(EntryName(i), static_cast<Value>(i % 2));
    }
    Value Read(const std::wstring& entry) {
        const std::lock_guard<std::mutex> guard(lock);
        return values.find(entry)->second;
    }
    void Write(const std::wstring& entry, Value value) {
        const std::lock_guard<std::mutex> guard(lock);
        values.find(entry)->second = value;
    }
};

template <class Map, Contexts kContexts>
Map& MapOf(const benchmark::State& state) {
    static std::array<Map, kMaxThreads> maps;
    return maps[static_cast<std::size_t>(ContextIndex<kContexts>(state))];
}

template <class Map, Contexts kContexts>
void CopyIntoText(benchmark::State& state) {
    Map& map = MapOf<Map, kContexts>(state);
    std::wstring text;
    ReadEntries(state, [&](const std::wstring& entry) {
        map.Read(entry, text);
        return text.data();
    });
}

template <class Value, Contexts kContexts>
void CopyValue(benchmark::State& state) {
    auto& map = MapOf<MapOfValues<Value>, kContexts>(state);
    ReadEntries(state, [&](const std::wstring& entry) { return map.Read(entry); });
}

void CopyIntegerBesideAWriter(benchmark::State& state) {
    auto& map = MapOf<MapOfValues<int>, kSame>(state);
    ReadBesideAWriter(
        state, [&map] { map.Write(EntryName(0), 1); },
        [&map](const std::wstring& entry) { return map.Read(entry); });
}

template <class Map, Contexts kContexts>
void CopyNewText(benchmark::State& state) {
    Map& map = MapOf<Map, kContexts>(state);
    ReadEntries(state, [&](const std::wstring& entry) {
        std::wstring text;
        map.Read(entry, text);
        return text;
    });
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

// --- growth
// ----------------------------------------------------------------------------------------------------------

void PerItem(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// A store filled and written as a document.
void FillAndWrite(benchmark::State& state) {
    std::vector<std::wstring> names;
    for (int i = 0; i < state.range(0); ++i) names.push_back(EntryName(i));
    for (auto _ : state) {
        CQlsSettings store;
        for (const std::wstring& name : names)
            store.SetRegStrSetting(kSection, name.c_str(), L"C:\\Templates");
        RWWString document;
        store.GetSerializedSettings(&document);
        benchmark::DoNotOptimize(document.data());
    }
    PerItem(state);
}

// A document as somebody makes it who wants all its keys in a few buckets: their standard hashes end alike.
std::wstring DocumentOfKeysAlike(std::int64_t count) {
    constexpr std::size_t kSameBits = 0x3FF;
    std::wstring document;
    for (std::int64_t i = 0, found = 0; found < count; ++i) {
        const std::wstring key = L"Section<-^->" + std::to_wstring(i);
        if ((std::hash<std::wstring>()(key) & kSameBits) != 0) continue;
        document.append(document.empty() ? L"{\"" : L",\"").append(key).append(L"\":1");
        ++found;
    }
    return document + L'}';
}

void ReadKeysAlike(benchmark::State& state) {
    const std::wstring document = DocumentOfKeysAlike(state.range(0));
    for (auto _ : state) {
        CQlsSettings store;
        store.SetFromSerializedSettings(document.c_str());
    }
    PerItem(state);
}

void MakeContexts(benchmark::State& state) {
    TheScene();
    std::vector<int> ids(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        for (int& id : ids) id = CQlsSettings::CreateThreadSettings();
        for (const int id : ids) CQlsSettings::ReleaseThreadSettingsRef(id);
    }
    PerItem(state);
}

// As many threads as the size, each with 10,000 readings from one context.
void ReadByThreads(benchmark::State& state) {
    constexpr int kReadings = 10'000;
    const int context = TheScene().Context(0);
    const auto read = [context] {
        const Attached attached(context);
        RWWString text;
        for (std::size_t i = 0; i < kReadings; ++i)
            CQlsSettings::GetThreadRegStrSetting(kSection, EntryNames()[i % kEntries].c_str(), &text);
    };
    for (auto _ : state) {
        std::vector<std::thread> threads;
        for (int i = 0; i < state.range(0); ++i) threads.emplace_back(read);
        for (std::thread& thread : threads) thread.join();
    }
    PerItem(state);
}

void ListEntriesOfBothRoots(benchmark::State& state) {
    TheScene();
    constexpr wchar_t kMany[] = L"Many";
    for (int i = 0; i < state.range(0); ++i)
        CQlsSettings::SetDefRegIntSetting(kMany, EntryName(i).c_str(), i);
    for (auto _ : state) benchmark::DoNotOptimize(EnumQLEntries(kMany).NumEntries());
    PerItem(state);
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

void OnOneAndFourThreads(benchmark::internal::Benchmark* reads) {
    reads->Threads(1)->Threads(kMaxThreads)->UseRealTime();
}

#define QL_READS(name, ...) BENCHMARK(__VA_ARGS__)->Name("cached read, " name)->Apply(OnOneAndFourThreads)
QL_READS("same context/ours", ReadIntoText<kSame>);
QL_READS("same context/held-open key", QueryOpenKey);
QL_READS("same context/bare map, key given", CopyIntoText<MapOfGivenKeys, kSame>);
QL_READS("same context/bare map, key made", CopyIntoText<MapOfMadeKeys, kSame>);
QL_READS("own contexts/ours", ReadIntoText<kOwn>);
QL_READS("own contexts/held-open key", QueryOpenKey);
QL_READS("own contexts/bare map, key given", CopyIntoText<MapOfGivenKeys, kOwn>);
QL_READS("own contexts/bare map, key made", CopyIntoText<MapOfMadeKeys, kOwn>);
QL_READS("absent, same context/ours", ReadAbsentText<kSame>);
QL_READS("integer, same context/ours", ReadInteger<kSame>);
QL_READS("integer, same context/bare map, key given", CopyValue<int, kSame>);
QL_READS("integer, own contexts/ours", ReadInteger<kOwn>);
QL_READS("integer, own contexts/bare map, key given", CopyValue<int, kOwn>);
QL_READS("Boolean, same context/ours", ReadBoolean<kSame>);
QL_READS("Boolean, same context/bare map, key given", CopyValue<bool, kSame>);
QL_READS("Boolean, own contexts/ours", ReadBoolean<kOwn>);
QL_READS("Boolean, own contexts/bare map, key given", CopyValue<bool, kOwn>);
QL_READS("new text, same context/ours", ReadNewText<kSame>);
QL_READS("new text, same context/bare map, key given", CopyNewText<MapOfGivenKeys, kSame>);
QL_READS("new text, same context/bare map, key made", CopyNewText<MapOfMadeKeys, kSame>);
#undef QL_READS
BENCHMARK(ReadIntegerBesideAWriter)
    ->Name("cached read, integer, beside a writer/ours")
    ->Threads(kMaxThreads)
    ->UseRealTime();
BENCHMARK(CopyIntegerBesideAWriter)
    ->Name("cached read, integer, beside a writer/bare map, key given")
    ->Threads(kMaxThreads)
    ->UseRealTime();
BENCHMARK(LoadStore)->Name("first load of 500/ours")->Unit(benchmark::kMillisecond);
BENCHMARK(LoadRaw)->Name("first load of 500/open, query, close")->Unit(benchmark::kMillisecond);
BENCHMARK(FillAndWrite)->Name("growth, a document of settings")->RangeMultiplier(10)->Range(10, 100000);
BENCHMARK(ReadKeysAlike)->Name("growth, a document of keys alike")->RangeMultiplier(4)->Range(16, 16384);
BENCHMARK(MakeContexts)->Name("growth, contexts made and released")->RangeMultiplier(10)->Range(1, 10000);
BENCHMARK(ReadByThreads)
    ->Name("growth, 10,000 cached reads a thread")
    ->RangeMultiplier(4)
    ->Range(1, 64)
    ->UseRealTime();
BENCHMARK(ListEntriesOfBothRoots)
    ->Name("growth, entries of both roots")
    ->RangeMultiplier(10)
    ->Range(10, 1000);
BENCHMARK(HoldSettings)->Name("store of 10,000 settings/bytes")->Iterations(1);

}  // namespace
