// Documents and trees: what is parsed and written is the same tree when parsed again, in every form of the
// writer, and the diagnosis finds a fault exactly where the parser refuses.

#include "json/diagnosis.h"
#include "json/json.h"
#include "tests/fuzz/fuzz.h"

namespace {

// The writer keeps five decimals, and makes null of the infinite: numbers are told as it writes them.
std::wstring Told(const JSON::Value& value) {
    if (value.kind() == JSON::Number || value.kind() == JSON::Null) return JSON::Serialize(&value).str();
    return std::to_wstring(value.kind()) + L' ' + std::to_wstring(value.ElementCount()) + L' ' +
           std::to_wstring(value.MemberCount()) + (value.flag() ? L" true " : L" ") +
           RWWString(value.text()).str();
}

void AddChildren(JSON::Value& parent, std::vector<JSON::Value*>& open, std::vector<std::wstring>& outline) {
    for (std::size_t i = 0; i < parent.ElementCount(); ++i) open.push_back(parent.Element(i));
    RWWString key;
    std::vector<RWWString> keys;
    for (JSON::Value* child = parent.FirstMember(key); child; child = parent.NextMember(key)) {
        Expect(keys.empty() || keys.back() < key);
        Expect(parent.Member(key) == child);
        keys.push_back(key);
        open.push_back(child);
        outline.push_back(key.str());
    }
    Expect(keys.size() == parent.MemberCount());
}

// Every node's own content and its keys, in one order.
std::vector<std::wstring> OutlineOf(JSON::Value& tree) {
    std::vector<std::wstring> outline;
    for (std::vector<JSON::Value*> open{&tree}; !open.empty();) {
        JSON::Value& value = *open.back();
        open.pop_back();
        outline.push_back(Told(value));
        AddChildren(value, open, outline);
    }
    return outline;
}

void CheckForms(JSON::Value& tree) {
    const auto outline = OutlineOf(tree);
    const auto copy = tree.Clone();
    Expect(copy && OutlineOf(*copy) == outline);
    for (const bool asciiOnly : {false, true}) {
        for (const bool pretty : {false, true}) {
            const auto document = JSON::Serialize(&tree, asciiOnly, pretty);
            const auto again = JSON::Parse(document);
            Expect(again && OutlineOf(*again) == outline);
            Expect(JSON::Serialize(again.get(), asciiOnly, pretty) == document);
        }
    }
}

void CheckFault(std::wstring_view text, const JSON::Fault& fault) {
    Expect(fault.line >= 1 && fault.line <= text.size() + 1);
    Expect(fault.column >= 1 && fault.column <= text.size() + 1);
    Expect(fault.expected && *fault.expected && !fault.found.isNull());
}

void Check(const std::wstring& text) {
    const auto tree = JSON::Parse(text);
    const auto fault = JSON::Diagnose(text);
    Expect(!tree == fault.has_value());
    if (fault) CheckFault(text, *fault);
    if (tree) CheckForms(*tree);
}

}  // namespace

FUZZER(Json, "[[", "\"a\",", "\"\\u00e9/\n\",", "{\"b\":[],\"a\":true},", "{},", "[[-0.015625],null],",
       "false,", "7e5,") {
    const std::wstring text = TextOf(input);
    Check(text);
    Check(text + L"0]]");
}
