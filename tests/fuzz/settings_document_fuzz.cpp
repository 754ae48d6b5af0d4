// Settings documents: a text that is no JSON object changes nothing, one that is sets what a plain model of
// it says, and a store's document makes the same store again.
#include <cmath>
#include <limits>
#include <map>
#include <memory>

#include "json/json.h"
#include "settings/settings_store.h"
#include "tests/fuzz/fuzz.h"

namespace {

RWWString UpToZero(std::wstring_view text) {
    return text.substr(0, text.find(L'\0'));
}

RWWString Document(CQlsSettings& store) {
    RWWString document;
    Expect(store.GetSerializedSettings(&document));
    return document;
}

// The document of a store that was set from the tree. Keys that are alike up to a zero are one key, and a key
// keeps the type that it was first given; numbers are the nearest integers toward zero that there are.
RWWString Expected(JSON::Value& tree) {
    constexpr double kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();
    std::map<RWWString, std::unique_ptr<JSON::Value>> settings;
    RWWString key;
    for (JSON::Value* member = tree.FirstMember(key); member; member = tree.NextMember(key)) {
        auto kept = member->Clone();
        switch (kept->kind()) {
            case JSON::String: kept = std::make_unique<JSON::Value>(UpToZero(member->text())); break;
            case JSON::Number:
                kept = std::make_unique<JSON::Value>(std::trunc(std::clamp(kept->number(), kLeast, kMost)));
                break;
            case JSON::Bool: break;
            default: continue;
        }
        auto& setting = settings[UpToZero(key)];
        if (!setting || setting->kind() == kept->kind()) setting = std::move(kept);
    }
    JSON::Value root(JSON::Object);
    for (auto& [name, value] : settings) Expect(root.AddMember(name, std::move(value)));
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
