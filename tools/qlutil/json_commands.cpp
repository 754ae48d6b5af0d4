#include "json/diagnosis.h"
#include "json/json.h"
#include "text/unicode.h"
#include "tools/qlutil/bad_document.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/text_file.h"

namespace {

Answer Check(const Arguments& arguments) {
    std::wstring why;
    const auto text = ReadTextFile(arguments[0], why);
    if (!text) return Answer::Failure(why);
    if (!JSON::Parse(*text)) {
        return Answer(Record{{L"valid", false}}, DescribeBadDocument(arguments[0], *text));
    }
    return Record{{L"valid", true}};
}

Answer Format(const Arguments& arguments) {
    std::wstring why;
    const auto text = ReadTextFile(arguments[0], why);
    if (!text) return Answer::Failure(why);
    const auto root = JSON::Parse(*text);
    if (!root) return Answer::Failure(DescribeBadDocument(arguments[0], *text));
    const bool pretty = arguments.Has(L"pretty");
    RWWString written = JSON::Serialize(root.get(), arguments.Has(L"ascii"), pretty);
    // UTF-8 has no form for half a pair; the escaped form has one.
    if (ql::HasLoneSurrogate(written)) written = JSON::Serialize(root.get(), true, pretty);
    return Document{std::move(written)};
}

constexpr SwitchRow kFormatSwitches[] = {{L"pretty"}, {L"ascii"}};

constexpr Command kCommands[] = {
    {L"json check",
     L"FILE",
     L"Whether FILE (- is standard input) holds a JSON document; else where it is bad.",
     {},
     1,
     1,
     Check},
    {L"json format", L"[--pretty] [--ascii] FILE",
     L"The document on one line, or indented; members sorted, the first of equal keys kept, five decimals.",
     kFormatSwitches, 1, 1, Format},
};

}  // namespace

std::span<const Command> JsonCommands() {
    return kCommands;
}
