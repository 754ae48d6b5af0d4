// Whole command lines through the parsers of the three programs: whatever the line, what they answer hangs
// together, copies are alike and live alone, and the two servers' parsers agree.
// The input is the line.
#include <memory>
#include <utility>

#include "tests/fuzz/fuzz.h"
#include "tools/qlutil/switch_accessors.h"

namespace {

// Absent and empty differ.
std::wstring Shown(const wchar_t* text) {
    return text ? L'"' + std::wstring(text) + L'"' : L"-";
}

template <class Parser, class Rows>
std::wstring Texts(const Parser& parser, const Rows& rows) {
    std::wstring texts;
    for (const auto& row : rows) texts += Shown((parser.*row.get)());
    return texts;
}

std::wstring TextsOf(const QuilletCmdSwitchParser& parser) {
    return Texts(parser, kMainTexts);
}

std::wstring TextsOf(const ServerCmdSwitches& parser) {
    return Texts(parser, kServerTexts);
}

bool IsOneWord(const wchar_t* text) {
    return !text || std::wstring(text).find(L' ') == std::wstring::npos;
}

template <class Parser>
void ExpectWhole(const Parser& parser) {
    Expect(IsOneWord(parser.GetTray()) && IsOneWord(parser.GetPageSize()));
    Expect(parser.GetPrintCopies() >= 0);
}

template <class Parser>
void ExpectOwnTexts(std::unique_ptr<Parser> parser) {
    const std::wstring texts = TextsOf(*parser);
    const Parser constructed(*parser);
    Parser assigned(L"/pt=x /ps=y /desc=z");
    assigned = *parser;
    parser.reset();
    Expect(TextsOf(constructed) == texts && TextsOf(assigned) == texts);
}

void CheckMain(const wchar_t* line) {
    auto parser = std::make_unique<QuilletCmdSwitchParser>(line);
    ExpectWhole(*parser);
    const LibMode mode = parser->GetLibMode();
    Expect(mode >= LIBMODE_NONE && mode <= LIBMODE_SHOWN);
    Expect(!parser->IsLockLib() || parser->IsLibraryVisible());
    Expect(parser->IsSaveAnswers() || !parser->IsSaveAnswersPrompt());
    Expect(parser->IsOverlay() == (parser->GetOverlayFiles().NumEntries() == 1));
    const std::wstring texts = TextsOf(*parser);
    parser->ParseSwitches(L"");
    Expect(TextsOf(*parser) == texts && parser->GetLibMode() == mode && !parser->IsModelDocument());
    ExpectOwnTexts(std::move(parser));
    ExpectWhole(QuilletCmdSwitchParser(QLCmdLine(line)));
}

void CheckServers(const wchar_t* line) {
    auto filler = std::make_unique<FillerCmdSwitchParser>(line);
    ExpectWhole(*filler);
    const AutomatorCmdSwitchParser automator(line);
    Expect(TextsOf(*filler) == TextsOf(automator) && filler->IsPrint() == automator.IsPrint());
    const QuilletCmdSwitchParser main(line);
    Expect(filler->GetPrintCopies() == main.GetPrintCopies());
    ExpectOwnTexts(std::move(filler));
    ExpectWhole(FillerCmdSwitchParser(QLCmdLine(line)));
}

}  // namespace

void Try(Input input) {
    const std::wstring line = TextOf(input);
    CheckMain(line.c_str());
    CheckServers(line.c_str());
}
