#include <algorithm>
#include <iterator>
#include <span>
#include <vector>

#include "cmdline/command_switches.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/switch_accessors.h"

namespace {

using Main = QuilletCmdSwitchParser;

RWWString Text(std::wstring_view word) {
    return RWWString(word);
}

Node ToNode(const wchar_t* text) {
    return text ? Node(text) : Node(nullptr);
}
Node ToNode(bool flag) {
    return flag;
}

template <class Parser, class Result, std::size_t count>
void Append(Record& record, const Parser& parser, const Accessor<Parser, Result> (&accessors)[count]) {
    for (const auto& [key, get] : accessors) record.emplace_back(key, ToNode((parser.*get)()));
}

List ToList(const QLStringTable& table) {
    List texts;
    for (unsigned i = 0; i < table.NumEntries(); ++i) texts.emplace_back(table(static_cast<int>(i)));
    return texts;
}

Record Describe(Main& parser) {
    Record record = {
        {L"initialAskState", static_cast<int>(parser.GetInitialAskState())},
        {L"outputFileType", static_cast<int>(parser.GetOutputFileType())},
        {L"formProc", static_cast<int>(parser.GetFormProc())},
        {L"libMode", static_cast<int>(parser.GetLibMode())},
        {L"exit", static_cast<int>(parser.GetExit())},
    };
    Append(record, parser, kMainTexts);
    Append(record, parser, kMainGiven);
    Append(record, parser, kMainFlags);
    record.emplace_back(L"printCopies", static_cast<int>(parser.GetPrintCopies()));
    record.emplace_back(L"overlayFiles", ToList(parser.GetOverlayFiles()));
    return record;
}

Record Describe(const ServerCmdSwitches& parser) {
    Record record;
    Append(record, parser, kServerTexts);
    Append(record, parser, kServerFlags);
    record.emplace_back(L"printCopies", static_cast<int>(parser.GetPrintCopies()));
    return record;
}

// The modes that are numbers, by their names.
struct ModeRow {
    std::wstring_view key;
    int mode;
    const wchar_t* name;
};

constexpr ModeRow kModes[] = {
    {L"libMode", LIBMODE_NONE, L"LIBMODE_NONE"},
    {L"libMode", LIBMODE_HIDDEN, L"LIBMODE_HIDDEN"},
    {L"libMode", LIBMODE_SHOWN, L"LIBMODE_SHOWN"},
    {L"exit", EXIT_WHEN_DONE, L"EXIT_WHEN_DONE"},
    {L"exit", EXIT_NEVER, L"EXIT_NEVER"},
    {L"outputFileType", OUTPUT_AS, L"OUTPUT_AS"},
    {L"outputFileType", OUTPUT_QS, L"OUTPUT_QS"},
    {L"initialAskState", INITIALASK_UNANSWERED, L"INITIALASK_UNANSWERED"},
};

Node Named(std::wstring_view key, const Node& value) {
    const auto row = std::ranges::find_if(
        kModes, [&](const ModeRow& mode) { return mode.key == key && Node(mode.mode) == value; });
    return row != std::end(kModes) ? Node(row->name) : value;
}

// What the line changed, with modes by name, and what of it was ignored.
template <class Parser>
Record Given(Parser& parser) {
    Parser untouched(nullptr);
    const Record all = Describe(parser), usual = Describe(untouched);
    Record given;
    for (std::size_t i = 0; i < all.size(); ++i)
        if (!(all[i] == usual[i])) given.emplace_back(all[i].first, Named(all[i].first, all[i].second));
    given.emplace_back(L"ignored", ToList(parser.GetIgnoredWords()));
    return given;
}

template <class Parser>
Answer Read(const Arguments& arguments) {
    Parser parser(Text(arguments[0]).data());
    return arguments.Has(L"given") ? Given(parser) : Describe(parser);
}

Answer Scan(const Arguments& arguments) {
    CCommandSwitches switches;
    std::vector<RWWString> names;
    for (const std::wstring_view name : std::span(arguments.all()).subspan(1))
        names.push_back(CCommandSwitch(name, SWITCH_FLAG).GetName());  // without the blanks around it
    for (const RWWString& name : names) {
        switches.DeclareSwitch(name.data(), name.view().ends_with(L'=') ? SWITCH_VALUE : SWITCH_FLAG);
    }
    switches.Scan(Text(arguments[0]).data());
    Record found;
    for (const RWWString& name : names) {
        if (!switches.FindSwitch(name.data())) continue;
        const wchar_t* const value = switches.GetSwitchValue(name.data());
        found.emplace_back(name.str(), value ? Node(value) : Node(true));
    }
    return Record{{L"leadingText", switches.GetLeadingText()}, {L"found", std::move(found)}};
}

constexpr SwitchRow kReadSwitches[] = {{L"given"}};

constexpr Command kCommands[] = {
    {L"switches main", L"LINE [--given]",
     L"What the main application makes of a command line; --given: what the line changes and what is "
     L"ignored.",
     kReadSwitches, 1, 1, Read<Main>},
    {L"switches filler", L"LINE [--given]", L"What the Filler makes of a command line.", kReadSwitches, 1, 1,
     Read<FillerCmdSwitchParser>},
    {L"switches automator", L"LINE [--given]", L"What the Automator makes of a command line.", kReadSwitches,
     1, 1, Read<AutomatorCmdSwitchParser>},
    {L"scan",
     L"LINE NAME...",
     L"What LINE says of switches by these names; one that ends in \"=\" has a value.",
     {},
     2,
     kAnyNumber,
     Scan},
};

}  // namespace

std::span<const Command> SwitchCommands() {
    return kCommands;
}
