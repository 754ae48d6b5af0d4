// Parse, write and destroy settings documents, beside RapidJSON on UTF-16, and nlohmann and Boost.JSON on the
// same document in UTF-8.
#include <benchmark/benchmark.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <boost/json/src.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "json/json.h"

namespace {

constexpr std::size_t kSmall = 4 << 10;
constexpr std::size_t kLarge = 1 << 20;

// A settings document as the library writes it, on one line with its keys in order: texts (every second one a
// path), flags and whole numbers, under keys of a registry section and an entry.
std::wstring SettingsDocument(std::size_t bytes) {
    JSON::Value settings(JSON::Object);
    std::wstring document;
    for (int i = 0; document.size() * sizeof(char16_t) < bytes; ++i) {
        const std::wstring number = std::to_wstring(100000 + i);
        const std::wstring key = L"Locations\\Group " + number + L"<-^->Template Files " + number;
        const auto value = [&]() -> std::unique_ptr<JSON::Value> {
            switch (i % 4) {
                case 0:
                    return std::make_unique<JSON::Value>(
                        (L"C:\\Program Files\\Templates\\" + number).c_str());
                case 1: return std::make_unique<JSON::Value>(i % 8 == 1);
                case 2: return std::make_unique<JSON::Value>(static_cast<double>(i * 37));
                default:
                    return std::make_unique<JSON::Value>(
                        L"A text of usual length, without anything special in it");
            }
        };
        settings.AddMember(key, value());
        document.resize(document.size() + key.size() + 38);  // their usual length together
    }
    return JSON::Serialize(&settings).str();
}

const std::wstring& Document(std::size_t bytes) {
    static const std::wstring small = SettingsDocument(kSmall);
    static const std::wstring large = SettingsDocument(kLarge);
    return bytes == kSmall ? small : large;
}

std::string Utf8Of(const std::wstring& ascii) {
    return {ascii.begin(), ascii.end()};
}

// Runs the round trip over one document; `roundTrip` returns the length of what it wrote.
template <class Text, class RoundTrip>
void Run(benchmark::State& state, const Text& document, RoundTrip roundTrip) {
    for (auto _ : state) {
        if (roundTrip(document) < document.size() / 2) throw std::logic_error("the document was not read");
    }
    state.SetBytesProcessed(
        static_cast<std::int64_t>(state.iterations() * document.size() * sizeof(document[0])));
}

template <std::size_t kBytes>
void Ours(benchmark::State& state) {
    Run(state, Document(kBytes),
        [](const std::wstring& text) { return JSON::Serialize(JSON::Parse(text).get()).length(); });
}

template <std::size_t kBytes, unsigned kFlags>
void Rapid(benchmark::State& state) {
    using Utf16 = rapidjson::UTF16<>;
    Run(state, Document(kBytes), [](const std::wstring& text) {
        rapidjson::GenericDocument<Utf16> document;
        document.Parse<kFlags>(text.c_str());
        rapidjson::GenericStringBuffer<Utf16> buffer;
        rapidjson::Writer<decltype(buffer), Utf16, Utf16> writer(buffer);
        document.Accept(writer);
        return buffer.GetSize() / sizeof(wchar_t);
    });
}

template <std::size_t kBytes>
void Nlohmann(benchmark::State& state) {
    Run(state, Utf8Of(Document(kBytes)),
        [](const std::string& text) { return nlohmann::json::parse(text).dump().size(); });
}

template <std::size_t kBytes>
void Boost(benchmark::State& state) {
    Run(state, Utf8Of(Document(kBytes)),
        [](const std::string& text) { return boost::json::serialize(boost::json::parse(text)).size(); });
}

// Members put in by hand, the last key first.
void PutMembersDescending(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    std::vector<RWWString> keys;
    for (int i = count; i > 0; --i) keys.emplace_back(std::to_wstring(1000000 + i));
    for (auto _ : state) {
        JSON::Value object(JSON::Object);
        for (const RWWString& key : keys) object.AddMember(key, std::make_unique<JSON::Value>(1.0));
        benchmark::DoNotOptimize(object.MemberCount());
    }
    state.SetItemsProcessed(state.iterations() * count);
}

constexpr unsigned kExact = rapidjson::kParseFullPrecisionFlag;

BENCHMARK(Ours<kSmall>)->Name("json 4 KB/ours");
BENCHMARK(Rapid<kSmall, 0>)->Name("json 4 KB/RapidJSON UTF-16");
BENCHMARK(Rapid<kSmall, kExact>)->Name("json 4 KB/RapidJSON UTF-16 exact");
BENCHMARK(Nlohmann<kSmall>)->Name("json 4 KB/nlohmann");
BENCHMARK(Boost<kSmall>)->Name("json 4 KB/Boost.JSON");
BENCHMARK(Ours<kLarge>)->Name("json 1 MB/ours");
BENCHMARK(Rapid<kLarge, 0>)->Name("json 1 MB/RapidJSON UTF-16");
BENCHMARK(Rapid<kLarge, kExact>)->Name("json 1 MB/RapidJSON UTF-16 exact");
BENCHMARK(Nlohmann<kLarge>)->Name("json 1 MB/nlohmann");
BENCHMARK(Boost<kLarge>)->Name("json 1 MB/Boost.JSON");
BENCHMARK(PutMembersDescending)
    ->Name("growth, members in descending order")
    ->RangeMultiplier(10)
    ->Range(10, 100000);

}  // namespace
