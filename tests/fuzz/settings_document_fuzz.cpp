// Settings documents: a text that is no JSON object changes nothing, one that is sets what a plain model of
// it says, and a store's document makes the same store again.
#include <limits>
#include <map>
#include <memory>

#include "json/json.h"
#include "settings/settings_store.h"
#include "tests/fuzz/fuzz.h"

namespace {

std::wstring UpToZero(const RWWString& text) {
    return text.data();
}

RWWString Document(CQlsSettings& store) {
    RWWString document;
    Expect(store.GetSerializedSettings(&document));
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
    for (auto& [name, value] : settings) Expect(root.AddMember(RWWString(name), std::move(value)));
    return JSON::Serialize(&root);
}

void Check(const std::wstring& text) {
    CQlsSettings store, again;
    const bool accepted = store.SetFromSerializedSettings(text.c_str());
    const RWWString document = Document(store);
    const auto tree = JSON::Parse(std::wstring_view(text.c_str()));
    Expect(accepted == (tree && tree->kind() == JSON::Object));
    Expect(document == (accepted ? Expected(*tree) : RWWString(L"{}")));

    Expect(again.SetFromSerializedSettings(document.data()));
    Expect(Document(again) == document);
    Expect(!again.SetFromSerializedSettings((document + L"x").data()));
    Expect(Document(again) == document);
}

}  // namespace

FUZZER(SettingsDocument, "\"\":0", ",\"A<-^->B<-^->C\":\"x\"", ",\"12\":true", ",\"12\":\"\\ud83d\\\\\"",
       ",\"12\":-7.9", ",\"Zero\\u0000\":\"a\\u0000b\"", ",\"Zero\":1e300", ",\"A<-^->\":-1e300",
       ",\"List\":[null,{\"a\":1}]") {
    const std::wstring text = TextOf(input);
    Check(text);
    Check(L'{' + text + L'}');
}
