#include "cmdline/server_switch_parsers.h"

#include "cmdline/command_switches.h"
#include "cmdline/switch_values.h"

struct ServerCmdSwitches::Row {
    const wchar_t* name;
    FlagIndex flag;
};

const ServerCmdSwitches::Row ServerCmdSwitches::kRows[] = {
    {L"pr", kPrint},
    {L"fp", kPrint},
    {L"register", kRegister},
    {L"regserver", kRegister},
    {L"unregister", kUnregister},
    {L"unregserver", kUnregister},
    {L"db", kSupressSplashScreen},
    {L"pb", kPrintBoth},
    {L"po", kPrintFormOnly},
    {L"pa", kPrintAnswersOnly},
    {L"pd", kPrintDuplex},
    {L"pw", kPrintWithoutDialogs},
    {L"automation", kAutomation},
    {L"dde", kDDE},
    {L"embedding", kEmbedded},
};

namespace {

constexpr const wchar_t* kCopies = L"pc=";
constexpr const wchar_t* kPageSize = L"ps=";
constexpr const wchar_t* kTray = L"pt=";

}  // namespace

ServerCmdSwitches::ServerCmdSwitches(const wchar_t* commandLine) {
    if (commandLine) ParseSwitches(commandLine);
}

ServerCmdSwitches::ServerCmdSwitches(const QLCmdLine& commandLine) {
    if (!commandLine.GetPathAndFileName().isNull()) TakeFile(commandLine);
    const RWWString switches = commandLine.GetSwitches();
    if (switches.length() > 1) ParseSwitches(switches.data());
}

void ServerCmdSwitches::ParseSwitches(const wchar_t* commandLine) {
    CCommandSwitches given;
    for (const Row& row : kRows) given.DeclareSwitch(row.name, SWITCH_FLAG);
    for (const wchar_t* const name : {kCopies, kPageSize, kTray}) given.DeclareSwitch(name, SWITCH_VALUE);
    given.Scan(commandLine);

    if (given.HasLeadingText()) TakeFile(given.GetLeadingText());
    for (const Row& row : kRows) {
        if (given.IsSwitchSet(row.name)) flags_.set(row.flag);
    }
    if (const wchar_t* const value = given.GetSwitchValue(kCopies)) printCopies_ = ql::LeadingNumber(value);
    if (const wchar_t* const value = given.GetSwitchValue(kPageSize)) pageSize_ = ql::UpToBlank(value);
    if (const wchar_t* const value = given.GetSwitchValue(kTray)) tray_ = ql::UpToBlank(value);
}

void ServerCmdSwitches::TakeFile(const QLFileName& name) {
    fileName_ = ql::FullName(name, ql::CurrentDirectory()).GetPathAndFileName();
}

void ServerCmdSwitches::CheckThis(unsigned long expected) const {
    ql::CheckObject(this, expected);
}

FillerCmdSwitchParser::FillerCmdSwitchParser(const wchar_t* commandLine) : ServerCmdSwitches(commandLine) {}
FillerCmdSwitchParser::FillerCmdSwitchParser(const QLCmdLine& commandLine) : ServerCmdSwitches(commandLine) {}

AutomatorCmdSwitchParser::AutomatorCmdSwitchParser(const wchar_t* commandLine)
    : ServerCmdSwitches(commandLine) {}
AutomatorCmdSwitchParser::AutomatorCmdSwitchParser(const QLCmdLine& commandLine)
    : ServerCmdSwitches(commandLine) {}
