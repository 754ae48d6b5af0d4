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

Answer ReadMain(const Arguments& arguments) {
    Main parser(Text(arguments[0]).data());
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

template <class Parser>
Answer ReadServer(const Arguments& arguments) {
    const Parser parser(Text(arguments[0]).data());
    Record record;
    Append<ServerCmdSwitches>(record, parser, kServerTexts);
    Append<ServerCmdSwitches>(record, parser, kServerFlags);
    record.emplace_back(L"printCopies", static_cast<int>(parser.GetPrintCopies()));
    return record;
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

constexpr Command kCommands[] = {
    {L"switches main", L"LINE", L"What the main application makes of a command line.", {}, 1, 1, ReadMain},
    {L"switches filler",
     L"LINE",
     L"What the Filler makes of a command line.",
     {},
     1,
     1,
     ReadServer<FillerCmdSwitchParser>},
    {L"switches automator",
     L"LINE",
     L"What the Automator makes of a command line.",
     {},
     1,
     1,
     ReadServer<AutomatorCmdSwitchParser>},
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
