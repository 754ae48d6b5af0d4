// Settings documents: a text that is no JSON object changes nothing, one that is sets what a plain model of
// it says, and a store's document makes the same store again.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <map>
#include <memory>
#include <string>

#include "settings/json.h"
#include "settings/settings_store.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

// Inputs of odd length are one byte a unit, so that plain documents can be grown too; the others are two, the
// low one first.
std::wstring TextOf(const std::uint8_t* data, std::size_t size) {
    if (size % 2 != 0) return {data, data + size};
    std::wstring text;
    for (std::size_t i = 0; i < size; i += 2)
        text.push_back(static_cast<wchar_t>(data[i] | data[i + 1] << 8));
    return text;
}

std::wstring UpToZero(const RWWString& text) {
    return text.data();
}

RWWString Document(CQlsSettings& store) {
    RWWString document;
    Require(store.GetSerializedSettings(&document));
    return document;
}

// The value as a store keeps it; null for what it passes over.
std::unique_ptr<JSON::Value> Kept(const JSON::Value& value) {
    constexpr double kLeast = std::numeric_limits<int>::min();
    constexpr double kMost = std::numeric_limits<int>::max();
    switch (value.kind()) {
        case JSON::String: return std::make_unique<JSON::Value>(RWWString(UpToZero(RWWString(value.text()))));
        case JSON::Bool: return std::make_unique<JSON::Value>(value.flag());
        case JSON::Number:
            return std::make_unique<JSON::Value>(
                static_cast<double>(static_cast<int>(std::clamp(value.number(), kLeast, kMost))));
        default: return nullptr;
    }
}

// The document of a store that was set from the tree. Keys that are alike up to a zero are one key, and a key
// keeps the type that it was first given.
RWWString Expected(JSON::Value& tree) {
    std::map<std::wstring, std::unique_ptr<JSON::Value>> settings;
    RWWString key;
    for (JSON::Value* member = tree.FirstMember(key); member; member = tree.NextMember(key)) {
        auto kept = Kept(*member);
        if (!kept) continue;
        auto& setting = settings[UpToZero(key)];
        if (!setting || setting->kind() == kept->kind()) setting = std::move(kept);
    }
    JSON::Value root(JSON::Object);
    for (auto& [name, value] : settings) Require(root.AddMember(RWWString(name), std::move(value)));
    return JSON::Serialize(&root);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring text = TextOf(data, size);
    CQlsSettings store;
    const bool accepted = store.SetFromSerializedSettings(text.c_str());
    const RWWString document = Document(store);
    const auto tree = JSON::Parse(std::wstring_view(text.c_str()));
    Require(accepted == (tree && tree->kind() == JSON::Object));
    Require(document == (accepted ? Expected(*tree) : RWWString(L"{}")));

    CQlsSettings again;
    Require(again.SetFromSerializedSettings(document.data()));
    Require(Document(again) == document);
    Require(!again.SetFromSerializedSettings((document + L"x").data()));
    Require(Document(again) == document);
    return 0;
}
