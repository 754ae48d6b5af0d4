#include "cmdline/server_switch_parsers.h"

#include "cmdline/command_switches.h"
#include "cmdline/switch_values.h"
#include "platform/failure.h"
#include "platform/message_box.h"

struct ServerCmdSwitches::Table {
    struct Row {
        const wchar_t* name;
        FlagIndex flag;
    };

    static constexpr Row kFlags[] = {
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
    static constexpr const wchar_t* kCopies = L"pc=";
    static constexpr const wchar_t* kPageSize = L"ps=";
    static constexpr const wchar_t* kTray = L"pt=";
};

ServerCmdSwitches::ServerCmdSwitches(const wchar_t* commandLine) noexcept {
    if (commandLine) ql::Completes([&] { ParseSwitches(commandLine); });
}

ServerCmdSwitches::ServerCmdSwitches(const QLCmdLine& commandLine) noexcept {
    ql::Completes([&] {
        if (!commandLine.GetPathAndFileName().isNull()) TakeFile(commandLine);
        const RWWString switches = commandLine.GetSwitches();
        if (switches.length() > 1) ParseSwitches(switches.data());
    });
}

void ServerCmdSwitches::ParseSwitches(const wchar_t* commandLine) {
    CCommandSwitches given;
    for (const Table::Row& row : Table::kFlags) given.DeclareSwitch(row.name, SWITCH_FLAG);
    for (const wchar_t* const name : {Table::kCopies, Table::kPageSize, Table::kTray})
        given.DeclareSwitch(name, SWITCH_VALUE);
    given.Scan(commandLine);

    ignoredWords_ = given.GetIgnored();
    if (given.HasLeadingText()) TakeFile(given.GetLeadingText());
    for (const Table::Row& row : Table::kFlags) {
        if (given.IsSwitchSet(row.name)) flags_.set(row.flag);
    }
    if (const wchar_t* const value = given.GetSwitchValue(Table::kCopies))
        printCopies_ = ql::LeadingNumber(value);
    if (const wchar_t* const value = given.GetSwitchValue(Table::kPageSize)) pageSize_ = ql::UpToBlank(value);
    if (const wchar_t* const value = given.GetSwitchValue(Table::kTray)) tray_ = ql::UpToBlank(value);
}

void ServerCmdSwitches::TakeFile(const QLFileName& name) {
    fileName_ = ql::FullNameHere(name).GetPathAndFileName();
}

void ServerCmdSwitches::CheckThis(unsigned long expected) const {
    ql::CheckObject(this, expected);
}

FillerCmdSwitchParser::FillerCmdSwitchParser(const wchar_t* commandLine) noexcept
    : ServerCmdSwitches(commandLine) {}
FillerCmdSwitchParser::FillerCmdSwitchParser(const QLCmdLine& commandLine) noexcept
    : ServerCmdSwitches(commandLine) {}

AutomatorCmdSwitchParser::AutomatorCmdSwitchParser(const wchar_t* commandLine) noexcept
    : ServerCmdSwitches(commandLine) {}
AutomatorCmdSwitchParser::AutomatorCmdSwitchParser(const QLCmdLine& commandLine) noexcept
    : ServerCmdSwitches(commandLine) {}
