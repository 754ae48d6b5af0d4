// Whole command lines through the parsers of the three programs: whatever the line, what they answer hangs
// together, copies are alike and live alone, and the two servers' parsers agree.
// The input is the line.
#include <memory>
#include <utility>

#include "tests/cmdline/parser_state.h"
#include "tests/fuzz/fuzz.h"

namespace {

bool IsOneWord(const wchar_t* text) {
    return !text || std::wstring(text).find(L' ') == std::wstring::npos;
}

template <class Parser>
void ExpectWhole(const Parser& parser) {
    Expect(IsOneWord(parser.GetTray()));
    Expect(IsOneWord(parser.GetPageSize()));
    Expect(parser.GetPrintCopies() >= 0);
}

template <class Parser>
void ExpectOwnTexts(std::unique_ptr<Parser> parser) {
    const std::wstring state = StateOf(*parser);
    Parser constructed(*parser), assigned(L"/pt=x /ps=y /desc=z");
    assigned = *parser;
    parser.reset();
    Expect(StateOf(constructed) == state);
    Expect(StateOf(assigned) == state);
}

void CheckMain(const wchar_t* line) {
    auto parser = std::make_unique<QuilletCmdSwitchParser>(line);
    ExpectWhole(*parser);
    const LibMode mode = parser->GetLibMode();
    Expect(mode >= LIBMODE_NONE && mode <= LIBMODE_SHOWN);
    Expect(!parser->IsLockLib() || parser->IsLibraryVisible());
    Expect(parser->IsSaveAnswers() || !parser->IsSaveAnswersPrompt());
    Expect(parser->IsOverlay() == (parser->GetOverlayFiles().NumEntries() == 1));
    const std::wstring texts = Texts(*parser, kMainTexts);
    parser->ParseSwitches(L"");
    Expect(Texts(*parser, kMainTexts) == texts);
    Expect(parser->GetLibMode() == mode);
    Expect(!parser->IsModelDocument());
    ExpectOwnTexts(std::move(parser));
    ExpectWhole(QuilletCmdSwitchParser(QLCmdLine(line)));
}

void CheckServers(const wchar_t* line) {
    auto filler = std::make_unique<FillerCmdSwitchParser>(line);
    ExpectWhole(*filler);
    Expect(StateOf(*filler) == StateOf(AutomatorCmdSwitchParser(line)));
    Expect(filler->GetPrintCopies() == QuilletCmdSwitchParser(line).GetPrintCopies());
    ExpectOwnTexts(std::move(filler));
    ExpectWhole(FillerCmdSwitchParser(QLCmdLine(line)));
}

}  // namespace

FUZZER(SwitchParsers, "", " /", " ", "\"", "pc=", "pt=", "ps=", "ov=", "lf=", "ll", "af=", "qli=", "sap",
       "a.anx", "-2") {
    const std::wstring line = TextOf(input);
    CheckMain(line.c_str());
    CheckServers(line.c_str());
}
