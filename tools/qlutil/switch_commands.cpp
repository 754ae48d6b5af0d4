#include <iterator>

#include "cmdline/command_switches.h"
#include "cmdline/main_switch_parser.h"
#include "cmdline/server_switch_parsers.h"
#include "tools/qlutil/command.h"

namespace {

// One accessor of a parser and the key of what it answers.
template <class Parser, class Result>
struct Accessor {
    const wchar_t* key;
    Result (Parser::*get)() const;
};

using Main = QuilletCmdSwitchParser;

constexpr Accessor<Main, const wchar_t*> kMainTexts[] = {
    {L"tplPath", &Main::GetTplPath},
    {L"answerFile", &Main::GetAnswerFile},
    {L"newAnswerFile", &Main::GetNewAnswerFile},
    {L"outputFile", &Main::GetOutputFile},
    {L"library", &Main::GetLibrary},
    {L"qLIFile", &Main::GetQLIFile},
    {L"qLAFile", &Main::GetQLAFile},
    {L"installationFile", &Main::GetInstallationFile},
    {L"defAnsFile", &Main::GetDefAnsFile},
    {L"outputPluginTokenId", &Main::GetOutputPluginTokenId},
    {L"clauseName", &Main::GetClauseName},
    {L"tray", &Main::GetTray},
    {L"pageSize", &Main::GetPageSize},
    {L"description", &Main::GetDescription},
    {L"pathDescription", &Main::GetPathDescription},
    {L"typeDescription", &Main::GetTypeDescription},
    {L"nameDescription", &Main::GetNameDescription},
    {L"editFile", &Main::GetEditFile},
};

constexpr Accessor<Main, bool> kMainFlags[] = {
    {L"asmSwitch", &Main::IsAsmSwitch},
    {L"qLASwitch", &Main::IsQLASwitch},
    {L"qLISwitch", &Main::IsQLISwitch},
    {L"editSet", &Main::IsEditSet},
    {L"answerFileSet", &Main::IsAnswerFileSet},
    {L"overlay", &Main::IsOverlay},
    {L"libraryVisible", &Main::IsLibraryVisible},
    {L"noInterview", &Main::IsNoInterview},
    {L"saveAnswers", &Main::IsSaveAnswers},
    {L"saveAnswersPrompt", &Main::IsSaveAnswersPrompt},
    {L"lockAnswers", &Main::IsLockAnswers},
    {L"lockLib", &Main::IsLockLib},
    {L"newAnswer", &Main::IsNewAnswer},
    {L"suppressUnansweredWarning", &Main::IsSuppressUnansweredWarning},
    {L"supressSplashScreen", &Main::IsSupressSplashScreen},
    {L"print", &Main::IsPrint},
    {L"printBoth", &Main::IsPrintBoth},
    {L"printFormOnly", &Main::IsPrintFormOnly},
    {L"printAnswersOnly", &Main::IsPrintAnswersOnly},
    {L"printDuplex", &Main::IsPrintDuplex},
    {L"printWithoutDialogs", &Main::IsPrintWithoutDialogs},
    {L"currentDoc", &Main::IsCurrentDoc},
    {L"discardAnswers", &Main::IsDiscardAnswers},
    {L"register", &Main::IsRegister},
    {L"hideAssemblyWindow", &Main::IsHideAssemblyWindow},
    {L"sendToWP", &Main::IsSendToWP},
    {L"suppressInstallation", &Main::IsSuppressInstallation},
    {L"dDE", &Main::IsDDE},
    {L"automation", &Main::IsAutomation},
    {L"embedded", &Main::IsEmbedded},
    {L"suggestSaveSet", &Main::IsSuggestSaveSet},
    {L"suggestSaveNewSet", &Main::IsSuggestSaveNewSet},
    {L"finishInterviewActionSet", &Main::IsFinishInterviewActionSet},
    {L"startInterviewGroupSet", &Main::IsStartInterviewGroupSet},
    {L"keepInterviewGroupSet", &Main::IsKeepInterviewGroupSet},
    {L"modelDocument", &Main::IsModelDocument},
};

using Server = ServerCmdSwitches;

constexpr Accessor<Server, const wchar_t*> kServerTexts[] = {
    {L"fileName", &Server::GetFileName},
    {L"tray", &Server::GetTray},
    {L"pageSize", &Server::GetPageSize},
};

constexpr Accessor<Server, bool> kServerFlags[] = {
    {L"print", &Server::IsPrint},
    {L"register", &Server::IsRegister},
    {L"unregister", &Server::IsUnregister},
    {L"supressSplashScreen", &Server::IsSupressSplashScreen},
    {L"printBoth", &Server::IsPrintBoth},
    {L"printFormOnly", &Server::IsPrintFormOnly},
    {L"printAnswersOnly", &Server::IsPrintAnswersOnly},
    {L"printDuplex", &Server::IsPrintDuplex},
    {L"printWithoutDialogs", &Server::IsPrintWithoutDialogs},
    {L"dDE", &Server::IsDDE},
    {L"automation", &Server::IsAutomation},
    {L"embedded", &Server::IsEmbedded},
};

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
    Append(record, parser, kMainFlags);
    record.emplace_back(L"printCopies", static_cast<int>(parser.GetPrintCopies()));
    record.emplace_back(L"overlayFiles", ToList(parser.GetOverlayFiles()));
    return record;
}

template <class Parser>
Answer ReadServer(const Arguments& arguments) {
    const Parser parser(Text(arguments[0]).data());
    Record record;
    Append<Server>(record, parser, kServerTexts);
    Append<Server>(record, parser, kServerFlags);
    record.emplace_back(L"printCopies", static_cast<int>(parser.GetPrintCopies()));
    return record;
}

Answer Scan(const Arguments& arguments) {
    CCommandSwitches switches;
    const std::vector<RWWString> names(std::next(arguments.all().begin()), arguments.all().end());
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
