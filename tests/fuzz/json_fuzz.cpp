// Documents and trees: what is parsed and written is the same tree when parsed again, in every form of the
// writer, and the diagnosis finds a fault exactly where the parser refuses.

#include "json/diagnosis.h"
#include "json/json.h"
#include "tests/fuzz/fuzz.h"

namespace {

// Every node's members stand in the order of their keys and are found under them.
void CheckNodes(JSON::Value& tree) {
    for (std::vector<JSON::Value*> open{&tree}; !open.empty();) {
        JSON::Value& value = *open.back();
        open.pop_back();
        for (std::size_t i = 0; i < value.ElementCount(); ++i) open.push_back(value.Element(i));
        RWWString key, former;
        std::size_t members = 0;
        for (JSON::Value* child = value.NextMember(key); child; child = value.NextMember(key), ++members) {
            Expect(members == 0 || former < key);
            Expect(value.Member(key) == child);
            former = key;
            open.push_back(child);
        }
        Expect(members == value.MemberCount());
    }
}

void CheckForms(JSON::Value& tree) {
    CheckNodes(tree);
    const RWWString compact = JSON::Serialize(&tree);
    Expect(JSON::Serialize(tree.Clone().get()) == compact);
    for (const bool asciiOnly : {false, true}) {
        for (const bool pretty : {false, true}) {
            const auto again = JSON::Parse(JSON::Serialize(&tree, asciiOnly, pretty));
            Expect(JSON::Serialize(again.get()) == compact);
        }
    }
}

void Check(const std::wstring& text) {
    const auto tree = JSON::Parse(text);
    const auto fault = JSON::Diagnose(text);
    Expect(!tree == fault.has_value());
    if (tree) CheckForms(*tree);
    if (!fault) return;
    Expect(fault->line >= 1 && fault->line <= text.size() + 1);
    Expect(fault->column >= 1 && fault->column <= text.size() + 1);
    Expect(fault->expected && *fault->expected && !fault->found.isNull());
}

}  // namespace

FUZZER(Json, "[[", "\"a\",", "\"\\u00e9/\n\",", "{\"b\":[],\"a\":true},", "{},", "[[-0.015625],null],",
       "false,", "7e5,") {
    const std::wstring text = TextOf(input);
    Check(text);
    Check(text + L"0]]");
}
