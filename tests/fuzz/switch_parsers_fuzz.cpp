// Whole command lines through the parsers of the three programs: whatever the line, what they answer hangs
// together, copies are alike and live alone, and the two servers' parsers agree.
// The input is the line.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "cmdline/main_switch_parser.h"
#include "cmdline/server_switch_parsers.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

// Absent and empty differ.
std::wstring Shown(const wchar_t* text) {
    return text ? L'"' + std::wstring(text) + L'"' : L"-";
}

std::wstring TextsOf(const QuilletCmdSwitchParser& parser) {
    std::wstring texts;
    for (const wchar_t* const text :
         {parser.GetTplPath(), parser.GetAnswerFile(), parser.GetNewAnswerFile(), parser.GetOutputFile(),
          parser.GetLibrary(), parser.GetQLIFile(), parser.GetQLAFile(), parser.GetInstallationFile(),
          parser.GetDefAnsFile(), parser.GetOutputPluginTokenId(), parser.GetClauseName(), parser.GetTray(),
          parser.GetPageSize(), parser.GetDescription(), parser.GetPathDescription(),
          parser.GetTypeDescription(), parser.GetNameDescription(), parser.GetEditFile()}) {
        texts += Shown(text);
    }
    return texts;
}

std::wstring TextsOf(const ServerCmdSwitches& parser) {
    return Shown(parser.GetFileName()) + Shown(parser.GetTray()) + Shown(parser.GetPageSize());
}

bool IsOneWord(const wchar_t* text) {
    return !text || std::wstring(text).find(L' ') == std::wstring::npos;
}

template <class Parser>
void RequireWhole(const Parser& parser) {
    Require(IsOneWord(parser.GetTray()) && IsOneWord(parser.GetPageSize()));
    Require(parser.GetPrintCopies() >= 0);
}

template <class Parser>
void RequireOwnTexts(std::unique_ptr<Parser> parser) {
    const std::wstring texts = TextsOf(*parser);
    const Parser constructed(*parser);
    Parser assigned(L"/pt=x /ps=y /desc=z");
    assigned = *parser;
    parser.reset();
    Require(TextsOf(constructed) == texts && TextsOf(assigned) == texts);
}

void CheckMain(const wchar_t* line) {
    auto parser = std::make_unique<QuilletCmdSwitchParser>(line);
    RequireWhole(*parser);
    const LibMode mode = parser->GetLibMode();
    Require(mode >= LIBMODE_NONE && mode <= LIBMODE_SHOWN);
    Require(!parser->IsLockLib() || parser->IsLibraryVisible());
    Require(parser->IsSaveAnswers() || !parser->IsSaveAnswersPrompt());
    Require(parser->IsOverlay() == (parser->GetOverlayFiles().NumEntries() == 1));
    const std::wstring texts = TextsOf(*parser);
    parser->ParseSwitches(L"");
    Require(TextsOf(*parser) == texts && parser->GetLibMode() == mode && !parser->IsModelDocument());
    RequireOwnTexts(std::move(parser));
    RequireWhole(QuilletCmdSwitchParser(QLCmdLine(line)));
}

void CheckServers(const wchar_t* line) {
    auto filler = std::make_unique<FillerCmdSwitchParser>(line);
    RequireWhole(*filler);
    const AutomatorCmdSwitchParser automator(line);
    Require(TextsOf(*filler) == TextsOf(automator) && filler->IsPrint() == automator.IsPrint());
    const QuilletCmdSwitchParser main(line);
    Require(filler->GetPrintCopies() == main.GetPrintCopies());
    RequireOwnTexts(std::move(filler));
    RequireWhole(FillerCmdSwitchParser(QLCmdLine(line)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring line(data, data + size);
    CheckMain(line.c_str());
    CheckServers(line.c_str());
    return 0;
}
