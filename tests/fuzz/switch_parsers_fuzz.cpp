// Whole command lines through the parsers of the three programs: whatever the line, what they answer hangs
// together, copies are alike and live alone, and the two servers' parsers agree.
// The input is the line.
#include <memory>

#include "tests/cmdline/parser_state.h"
#include "tests/fuzz/fuzz.h"

namespace {

template <class Parser>
std::wstring CheckWhole(std::unique_ptr<Parser> parser) {
    const std::wstring state = StateOf(*parser);
    Parser constructed(*parser), assigned(L"/pt=x /ps=y /desc=z");
    assigned = *parser;
    parser.reset();
    Expect(StateOf(constructed) == state);
    Expect(StateOf(assigned) == state);
    return state;
}

void CheckMain(QuilletCmdSwitchParser parser) {
    const LibMode mode = parser.GetLibMode();
    Expect(!parser.IsLockLib() || parser.IsLibraryVisible());
    Expect(parser.IsSaveAnswers() || !parser.IsSaveAnswersPrompt());
    Expect(parser.IsOverlay() == (parser.GetOverlayFiles().NumEntries() == 1));
    const std::wstring texts = Texts(parser, kMainTexts);
    parser.ParseSwitches(L"");
    Expect(Texts(parser, kMainTexts) == texts);
    Expect(parser.GetLibMode() == mode);
    Expect(!parser.IsModelDocument());
}

template <class Line>
void Check(const Line& line) {
    CheckMain(QuilletCmdSwitchParser(line));
    CheckWhole(std::make_unique<QuilletCmdSwitchParser>(line));
    Expect(CheckWhole(std::make_unique<FillerCmdSwitchParser>(line)) ==
           StateOf(AutomatorCmdSwitchParser(line)));
}

}  // namespace

FUZZER(SwitchParsers, "", " /", " ", "\"", "pc=", "pt=", "ps=", "ov=", "lf=", "ll", "af=", "qli=", "sap",
       "a.anx", "-2") {
    const std::wstring line = TextOf(input);
    Check(line.c_str());
    Check(QLCmdLine(line.c_str()));
}
