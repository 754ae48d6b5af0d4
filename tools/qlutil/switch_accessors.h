#pragma once

#include "cmdline/main_switch_parser.h"
#include "cmdline/server_switch_parsers.h"

// One accessor of a parser and the key of what it answers.
template <class Parser, class Result>
struct Accessor {
    const wchar_t* key;
    Result (Parser::*get)() const;
};

inline constexpr Accessor<QuilletCmdSwitchParser, const wchar_t*> kMainTexts[] = {
    {L"tplPath", &QuilletCmdSwitchParser::GetTplPath},
    {L"answerFile", &QuilletCmdSwitchParser::GetAnswerFile},
    {L"newAnswerFile", &QuilletCmdSwitchParser::GetNewAnswerFile},
    {L"outputFile", &QuilletCmdSwitchParser::GetOutputFile},
    {L"library", &QuilletCmdSwitchParser::GetLibrary},
    {L"qLIFile", &QuilletCmdSwitchParser::GetQLIFile},
    {L"qLAFile", &QuilletCmdSwitchParser::GetQLAFile},
    {L"installationFile", &QuilletCmdSwitchParser::GetInstallationFile},
    {L"defAnsFile", &QuilletCmdSwitchParser::GetDefAnsFile},
    {L"outputPluginTokenId", &QuilletCmdSwitchParser::GetOutputPluginTokenId},
    {L"clauseName", &QuilletCmdSwitchParser::GetClauseName},
    {L"tray", &QuilletCmdSwitchParser::GetTray},
    {L"pageSize", &QuilletCmdSwitchParser::GetPageSize},
    {L"description", &QuilletCmdSwitchParser::GetDescription},
    {L"pathDescription", &QuilletCmdSwitchParser::GetPathDescription},
    {L"typeDescription", &QuilletCmdSwitchParser::GetTypeDescription},
    {L"nameDescription", &QuilletCmdSwitchParser::GetNameDescription},
    {L"editFile", &QuilletCmdSwitchParser::GetEditFile},
};

// What follows from the texts.
inline constexpr Accessor<QuilletCmdSwitchParser, bool> kMainGiven[] = {
    {L"asmSwitch", &QuilletCmdSwitchParser::IsAsmSwitch},
    {L"qLASwitch", &QuilletCmdSwitchParser::IsQLASwitch},
    {L"qLISwitch", &QuilletCmdSwitchParser::IsQLISwitch},
    {L"editSet", &QuilletCmdSwitchParser::IsEditSet},
    {L"answerFileSet", &QuilletCmdSwitchParser::IsAnswerFileSet},
    {L"overlay", &QuilletCmdSwitchParser::IsOverlay},
    {L"libraryVisible", &QuilletCmdSwitchParser::IsLibraryVisible},
};

inline constexpr Accessor<QuilletCmdSwitchParser, bool> kMainFlags[] = {
    {L"noInterview", &QuilletCmdSwitchParser::IsNoInterview},
    {L"saveAnswers", &QuilletCmdSwitchParser::IsSaveAnswers},
    {L"saveAnswersPrompt", &QuilletCmdSwitchParser::IsSaveAnswersPrompt},
    {L"lockAnswers", &QuilletCmdSwitchParser::IsLockAnswers},
    {L"lockLib", &QuilletCmdSwitchParser::IsLockLib},
    {L"newAnswer", &QuilletCmdSwitchParser::IsNewAnswer},
    {L"suppressUnansweredWarning", &QuilletCmdSwitchParser::IsSuppressUnansweredWarning},
    {L"supressSplashScreen", &QuilletCmdSwitchParser::IsSupressSplashScreen},
    {L"print", &QuilletCmdSwitchParser::IsPrint},
    {L"printBoth", &QuilletCmdSwitchParser::IsPrintBoth},
    {L"printFormOnly", &QuilletCmdSwitchParser::IsPrintFormOnly},
    {L"printAnswersOnly", &QuilletCmdSwitchParser::IsPrintAnswersOnly},
    {L"printDuplex", &QuilletCmdSwitchParser::IsPrintDuplex},
    {L"printWithoutDialogs", &QuilletCmdSwitchParser::IsPrintWithoutDialogs},
    {L"currentDoc", &QuilletCmdSwitchParser::IsCurrentDoc},
    {L"discardAnswers", &QuilletCmdSwitchParser::IsDiscardAnswers},
    {L"register", &QuilletCmdSwitchParser::IsRegister},
    {L"hideAssemblyWindow", &QuilletCmdSwitchParser::IsHideAssemblyWindow},
    {L"sendToWP", &QuilletCmdSwitchParser::IsSendToWP},
    {L"suppressInstallation", &QuilletCmdSwitchParser::IsSuppressInstallation},
    {L"dDE", &QuilletCmdSwitchParser::IsDDE},
    {L"automation", &QuilletCmdSwitchParser::IsAutomation},
    {L"embedded", &QuilletCmdSwitchParser::IsEmbedded},
    {L"suggestSaveSet", &QuilletCmdSwitchParser::IsSuggestSaveSet},
    {L"suggestSaveNewSet", &QuilletCmdSwitchParser::IsSuggestSaveNewSet},
    {L"finishInterviewActionSet", &QuilletCmdSwitchParser::IsFinishInterviewActionSet},
    {L"startInterviewGroupSet", &QuilletCmdSwitchParser::IsStartInterviewGroupSet},
    {L"keepInterviewGroupSet", &QuilletCmdSwitchParser::IsKeepInterviewGroupSet},
    {L"modelDocument", &QuilletCmdSwitchParser::IsModelDocument},
};

inline constexpr Accessor<ServerCmdSwitches, const wchar_t*> kServerTexts[] = {
    {L"fileName", &ServerCmdSwitches::GetFileName},
    {L"tray", &ServerCmdSwitches::GetTray},
    {L"pageSize", &ServerCmdSwitches::GetPageSize},
};

inline constexpr Accessor<ServerCmdSwitches, bool> kServerFlags[] = {
    {L"print", &ServerCmdSwitches::IsPrint},
    {L"register", &ServerCmdSwitches::IsRegister},
    {L"unregister", &ServerCmdSwitches::IsUnregister},
    {L"supressSplashScreen", &ServerCmdSwitches::IsSupressSplashScreen},
    {L"printBoth", &ServerCmdSwitches::IsPrintBoth},
    {L"printFormOnly", &ServerCmdSwitches::IsPrintFormOnly},
    {L"printAnswersOnly", &ServerCmdSwitches::IsPrintAnswersOnly},
    {L"printDuplex", &ServerCmdSwitches::IsPrintDuplex},
    {L"printWithoutDialogs", &ServerCmdSwitches::IsPrintWithoutDialogs},
    {L"dDE", &ServerCmdSwitches::IsDDE},
    {L"automation", &ServerCmdSwitches::IsAutomation},
    {L"embedded", &ServerCmdSwitches::IsEmbedded},
};
