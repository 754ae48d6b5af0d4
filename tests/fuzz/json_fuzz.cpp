// Documents and trees: what is parsed and written is the same tree when parsed again, in every form of the
// writer, and the diagnosis finds a fault exactly where the parser refuses.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "settings/json.h"
#include "settings/json_diagnosis.h"
#include "tests/fuzz/input.h"

namespace {

using fuzz::Expect;

// The writer keeps five decimals, and makes null of the infinite: numbers are compared as it writes them.
bool AreAlike(const JSON::Value& a, const JSON::Value& b) {
    if (a.kind() == JSON::Number) return JSON::Serialize(&a) == JSON::Serialize(&b);
    return a.kind() == b.kind() && a.text() == b.text() && a.flag() == b.flag() &&
           a.ElementCount() == b.ElementCount() && a.MemberCount() == b.MemberCount();
}

using Pair = std::pair<JSON::Value*, JSON::Value*>;

void AddChildren(const Pair& parents, std::vector<Pair>& open) {
    const auto [a, b] = parents;
    for (std::size_t i = 0; i < a->ElementCount(); ++i) open.emplace_back(a->Element(i), b->Element(i));
    RWWString key;
    RWWString previous;
    std::size_t count = 0;
    for (JSON::Value* child = a->FirstMember(key); child; child = a->NextMember(key), ++count) {
        Expect(count == 0 || previous < key);
        Expect(b->Member(key) != nullptr);
        open.emplace_back(child, b->Member(key));
        previous = key;
    }
    Expect(count == a->MemberCount());
}

bool AreEqual(JSON::Value& a, JSON::Value& b) {
    std::vector<Pair> open{{&a, &b}};
    while (!open.empty()) {
        const Pair pair = open.back();
        open.pop_back();
        if (!AreAlike(*pair.first, *pair.second)) return false;
        AddChildren(pair, open);
    }
    return true;
}

void CheckForms(JSON::Value& tree) {
    const auto copy = tree.Clone();
    Expect(copy && AreEqual(tree, *copy));
    for (const bool asciiOnly : {false, true}) {
        for (const bool pretty : {false, true}) {
            const auto document = JSON::Serialize(&tree, asciiOnly, pretty);
            const auto again = JSON::Parse(document);
            Expect(again && AreEqual(tree, *again));
            Expect(JSON::Serialize(again.get(), asciiOnly, pretty) == document);
        }
    }
}

void CheckFault(std::wstring_view text, const JSON::Fault& fault) {
    Expect(fault.line >= 1 && fault.line <= text.size() + 1);
    Expect(fault.column >= 1 && fault.column <= text.size() + 1);
    Expect(fault.expected && *fault.expected && !fault.found.isNull());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring text = fuzz::TextOf(data, size);
    const auto tree = JSON::Parse(text);
    const auto fault = JSON::Diagnose(text);
    Expect(!tree == fault.has_value());
    if (fault) CheckFault(text, *fault);
    if (tree) CheckForms(*tree);
    return 0;
}
