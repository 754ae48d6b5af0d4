#include <gtest/gtest.h>

#include <cstdint>
#include <future>
#include <memory>
#include <string>
#include <utility>

#include "cmdline/main_switch_parser.h"
#include "cmdline/server_switch_parsers.h"
#include "files/full_path.h"
#include "platform/win32.h"
#include "prefs/directories.h"

namespace {

template <class Parser>
struct Flag {
    const wchar_t* name;
    bool (Parser::*get)() const noexcept;
};

template <class Parser>
struct TextRow {
    const wchar_t* name;
    const wchar_t* (Parser::*get)() const noexcept;
};

using Main = QuilletCmdSwitchParser;

constexpr Flag<Main> kMainFlags[] = {
    {L"noInterview", &Main::IsNoInterview},
    {L"saveAnswers", &Main::IsSaveAnswers},
    {L"saveAnswersPrompt", &Main::IsSaveAnswersPrompt},
    {L"lockAnswers", &Main::IsLockAnswers},
    {L"lockLib", &Main::IsLockLib},
    {L"newAnswer", &Main::IsNewAnswer},
    {L"unansweredWarning", &Main::IsSuppressUnansweredWarning},
    {L"splash", &Main::IsSupressSplashScreen},
    {L"print", &Main::IsPrint},
    {L"printBoth", &Main::IsPrintBoth},
    {L"printForm", &Main::IsPrintFormOnly},
    {L"printAnswers", &Main::IsPrintAnswersOnly},
    {L"duplex", &Main::IsPrintDuplex},
    {L"noDialogs", &Main::IsPrintWithoutDialogs},
    {L"currentDoc", &Main::IsCurrentDoc},
    {L"discard", &Main::IsDiscardAnswers},
    {L"register", &Main::IsRegister},
    {L"hide", &Main::IsHideAssemblyWindow},
    {L"sendToWP", &Main::IsSendToWP},
    {L"noInstallation", &Main::IsSuppressInstallation},
    {L"dde", &Main::IsDDE},
    {L"automation", &Main::IsAutomation},
    {L"embedded", &Main::IsEmbedded},
    {L"suggestSave", &Main::IsSuggestSaveSet},
    {L"suggestSaveNew", &Main::IsSuggestSaveNewSet},
    {L"finish", &Main::IsFinishInterviewActionSet},
    {L"startGroup", &Main::IsStartInterviewGroupSet},
    {L"keepGroup", &Main::IsKeepInterviewGroupSet},
    {L"model", &Main::IsModelDocument},
};

constexpr TextRow<Main> kMainTexts[] = {
    {L"tpl", &Main::GetTplPath},
    {L"answers", &Main::GetAnswerFile},
    {L"newAnswers", &Main::GetNewAnswerFile},
    {L"output", &Main::GetOutputFile},
    {L"library", &Main::GetLibrary},
    {L"qli", &Main::GetQLIFile},
    {L"qla", &Main::GetQLAFile},
    {L"installation", &Main::GetInstallationFile},
    {L"defAnswers", &Main::GetDefAnsFile},
    {L"token", &Main::GetOutputPluginTokenId},
    {L"clause", &Main::GetClauseName},
    {L"tray", &Main::GetTray},
    {L"page", &Main::GetPageSize},
    {L"desc", &Main::GetDescription},
    {L"pathDesc", &Main::GetPathDescription},
    {L"typeDesc", &Main::GetTypeDescription},
    {L"nameDesc", &Main::GetNameDescription},
    {L"edit", &Main::GetEditFile},
};

template <class Parser, class Rows>
void AppendTexts(std::wstring& state, const Parser& parser, const Rows& rows) {
    for (const auto& row : rows) {
        if (const wchar_t* const text = (parser.*row.get)())
            state += std::wstring(L" ") + row.name + L"=" + text;
    }
}

template <class Parser, class Rows>
void AppendFlags(std::wstring& state, const Parser& parser, const Rows& rows) {
    for (const auto& row : rows) {
        if ((parser.*row.get)()) state += std::wstring(L" ") + row.name;
    }
}

void AppendNumber(std::wstring& state, const wchar_t* name, long value, long initial) {
    if (value != initial) state += std::wstring(L" ") + name + L"=" + std::to_wstring(value);
}

// All that differs from the state without switches.
std::wstring StateOf(Main& parser) {
    std::wstring state;
    AppendTexts(state, parser, kMainTexts);
    AppendFlags(state, parser, kMainFlags);
    AppendNumber(state, L"mode", parser.GetLibMode(), LIBMODE_UNDECIDED);
    AppendNumber(state, L"exit", parser.GetExit(), EXIT_UNDECIDED);
    AppendNumber(state, L"type", parser.GetOutputFileType(), OUTPUT_NOT_GIVEN);
    AppendNumber(state, L"ask", parser.GetInitialAskState(), INITIALASK_DEFAULT);
    AppendNumber(state, L"copies", parser.GetPrintCopies(), 1);
    for (unsigned i = 0; i < parser.GetOverlayFiles().NumEntries(); ++i) {
        state += L" overlay=" + parser.GetOverlayFiles()(static_cast<int>(i)).str();
    }
    return state.empty() ? state : state.substr(1);
}

std::wstring Below(const RWWString& directory, const wchar_t* name) {
    return MakeFullPath(QLFileName(name), directory.data(), nullptr).GetPathAndFileName().str();
}

std::wstring Here(const wchar_t* name) {
    wchar_t current[MAX_PATH];
    ::GetCurrentDirectoryW(MAX_PATH, current);
    return Below(current, name);
}

std::wstring In(QuilletDirectories directory, const wchar_t* name) {
    return Below(CQlDir::GetDirectory(directory), name);
}

TEST(MainSwitchParser, ReadsLines) {
    const struct {
        const wchar_t* line;
        std::wstring state;
    } cases[] = {
        {nullptr, L""},
        {L"", L""},
        {L"/zz unknown", L""},
        {L"letter.qft", L"tpl=" + Here(L"letter.qft")},
        {L"C:\\a.anx /ni", L"answers=C:\\a.anx noInterview"},
        {L"C:\\a.qla", L"qla=C:\\a.qla"},
        {L"::ODMA\\123 /an", L"tpl=::ODMA\\123 noInterview"},
        {L"C:\\a.qft /tf=C:\\b.qft", L"tpl=C:\\b.qft"},
        {L"/af=x.anx", L"answers=" + In(AnswerDirectory, L"x.anx")},
        {L"/af=::ODMA\\9", L"answers=::ODMA\\9"},
        {L"/df=x.anx /of=out.docx",
         L"output=" + Here(L"out.docx") + L" defAnswers=" + In(AnswerDirectory, L"x.anx")},
        {L"/lf=mylib", L"library=" + In(LibraryDirectory, L"mylib.qll") + L" mode=3"},
        {L"/lf=my.lib", L"library=" + In(LibraryDirectory, L"my.lib") + L" mode=3"},
        {L"/lf=::ODMA\\5", L"library=::ODMA\\5.qll mode=3"},
        {L"/tf=::ODMA\\1 /of=::ODMA\\2 /df=::ODMA\\3 /if=::ODMA\\4",
         L"tpl=::ODMA\\1 output=::ODMA\\2 installation=::ODMA\\4 defAnswers=::ODMA\\3"},
        {L"/if=setup.qli", L"installation=" + In(ProgramDirectory, L"setup.qli")},
        {L"/qa=a.qla /qla=b.qla", L"qla=b.qla"},
        {L"/qla=b.qla /qa=a.qla", L"qla=b.qla"},  // the order of the table, not of the line
        {L"/qli=b.qli /qi=a.qli", L"qli=b.qli mode=3"},
        {L"/nx /ex", L"mode=0 exit=1"},
        {L"/qs /as", L"type=2"},
        {L"/slw /hl", L"mode=1"},
        {L"/mi /ll", L"lockLib mode=3"},
        {L"/automation /qli=x.qli", L"qli=x.qli automation mode=3"},
        {L"/qli=x.qli /nlw", L"qli=x.qli mode=3"},
        {L"/nlw /slw", L"mode=1"},  // slw is claimed by sl, which comes after the mode was set
        {L"/ex /nx", L"mode=0 exit=1"},
        {L"/as /qs", L"type=2"},
        {L"/register /unregserver", L""},
        {L"/regserver", L"register"},
        {L"/is=Unanswered", L"ask=1"},
        {L"/is=x", L""},
        {L"/pc=3 /pt=Tray 2 /ps=\"A4 wide\"", L"tray=Tray page=A4 copies=3"},
        {L"/pc=many", L"copies=0"},
        {L"/pc=-2", L"copies=0"},
        {L"/pc=", L"copies=0"},
        {L"/pc=12x", L"copies=12"},
        {L"/pc=99999999999", L"copies=2147483647"},
        {L"/ov=a.qlo /ov=b.qlo", L"overlay=b.qlo"},  // a repeated value: the last
        {L"/fp /pb /po /pa /pd /pw", L"print printBoth printForm printAnswers duplex noDialogs"},
        {L"/desc=a /typedesc=d", L"desc=a typeDesc=d"},
        {L"/ff /fi /regserver /ss /nw", L"register hide suggestSave"},
        {L"/is=u /is=", L""},
        {L"/desc=\"a /b 'c'\" \"/cl=d=\"e", L"clause=d=e desc=a /b 'c"},  // the last quote goes
        {L"\"C:\\a /b.qft\" -tf=\"C:\\a b\\c.qft\" \"-ed=\"", L"tpl=C:\\a b\\c.qft edit="},
        {L"\"C:\\a b.qft\" \"/ni\"", L"tpl=C:\\a b.qft /ni"},  // no blank right before the slash
        {L"/ed='e f' /cl=\"x = 'y' /z\"", L"clause=x = 'y' /z edit=e"},
        {L"/sto= /embedding /dde", L"token= dde embedded mode=0"},
        {L"/kig /mo /db /sw /stw /si /cd /da /la /ll",
         L"lockAnswers lockLib unansweredWarning splash currentDoc discard sendToWP noInstallation "
         L"keepGroup model mode=3"},
        // Claimed by shorter names:
        {L"/pathdesc=b /namedesc=c", L"newAnswer printAnswers"},
        {L"/sig", L"noInstallation"},
        {L"/naw", L"newAnswer"},
        {L"/na=x.anx", L"newAnswer"},
        {L"/sap", L"saveAnswers"},
        {L"/slw", L"mode=3"},
        {L"/ssn", L"suggestSave"},
        {L"/fia", L""},
    };
    for (const auto& c : cases) {
        Main parser(c.line);
        EXPECT_EQ(StateOf(parser), c.state) << testing::PrintToString(c.line);
        Main copy(L"/pr");
        copy = parser;
        EXPECT_EQ(StateOf(copy), c.state);
    }
}

TEST(MainSwitchParser, CopiesOwnTheirTexts) {
    auto parser = std::make_unique<Main>(L"/desc=first /ov=a.qlo");
    Main constructed(*parser);
    Main assigned(nullptr);
    assigned = *parser;
    EXPECT_NE(constructed.GetDescription(), parser->GetDescription());
    parser->ParseSwitches(L"/desc=other /ov=b.qlo");
    EXPECT_EQ(StateOf(*parser), L"desc=other overlay=a.qlo overlay=b.qlo");
    parser.reset();
    EXPECT_EQ(StateOf(constructed), L"desc=first overlay=a.qlo");
    EXPECT_EQ(StateOf(assigned), L"desc=first overlay=a.qlo");
}

TEST(MainSwitchParser, ReadsLongLines) {
    const std::wstring value(100000, L'x');
    Main oneValue((L"/desc=" + value).c_str());
    EXPECT_EQ(StateOf(oneValue), L"desc=" + value);
    std::wstring many = L"/pc=2";
    for (int i = 0; i < 10000; ++i) many += L" /pt=" + std::to_wstring(i);
    Main parser(many.c_str());
    EXPECT_EQ(StateOf(parser), L"tray=9999 copies=2");
}

TEST(MainSwitchParser, KeepsAModeThatShowsOrHides) {
    Main parser(nullptr);
    for (const auto& [mode, kept] : {std::pair{LIBMODE_NONE, LIBMODE_NONE},
                                     {LIBMODE_UNDECIDED, LIBMODE_UNDECIDED},
                                     {LIBMODE_HIDDEN, LIBMODE_HIDDEN},
                                     {LIBMODE_NONE, LIBMODE_HIDDEN},
                                     {LIBMODE_SHOWN, LIBMODE_HIDDEN}}) {
        parser.SetLibMode(mode);
        EXPECT_EQ(parser.GetLibMode(), kept);
        EXPECT_EQ(parser.IsLibraryVisible(), kept == LIBMODE_UNDECIDED);
    }
    EXPECT_TRUE(Main(L"/sl").IsLibraryVisible());
}

// What follows from the texts.
TEST(MainSwitchParser, TellsWhatWasGiven) {
    const auto given = [](const wchar_t* line) {
        const Main p(line);
        const std::pair<const wchar_t*, bool> tests[] = {
            {L"asm", p.IsAsmSwitch()}, {L"qla", p.IsQLASwitch()},         {L"qli", p.IsQLISwitch()},
            {L"edit", p.IsEditSet()},  {L"answers", p.IsAnswerFileSet()}, {L"overlay", p.IsOverlay()},
        };
        std::wstring names;
        for (const auto& [name, is] : tests) names += is ? std::wstring(name) + L' ' : L"";
        return names;
    };
    EXPECT_EQ(given(L""), L"");
    EXPECT_EQ(given(L"a.qft /af=x"), L"asm answers ");
    EXPECT_EQ(given(L"/qla=a /qli= /ed= /ov="), L"qla qli edit overlay ");
}

TEST(MainSwitchParser, TakesACommandLineValue) {
    Main parser(QLCmdLine(L"\"C:\\My Files\\a.anx\" /ni /mo"));
    EXPECT_EQ(StateOf(parser), L"tpl=C:\\My Files\\a.anx noInterview model");
    parser.ParseSwitches(L"/pr");
    EXPECT_EQ(StateOf(parser), L"tpl=C:\\My Files\\a.anx noInterview print") << "mo tells of the last line";
    Main odma(QLCmdLine(L"::ODMA\\7 /"));
    EXPECT_EQ(StateOf(odma), L"tpl=::ODMA\\7");
}

template <class Parser>
std::wstring ServerStateOf(const Parser& parser) {
    static constexpr TextRow<ServerCmdSwitches> kTexts[] = {{L"file", &ServerCmdSwitches::GetFileName},
                                                            {L"tray", &ServerCmdSwitches::GetTray},
                                                            {L"page", &ServerCmdSwitches::GetPageSize}};
    static constexpr Flag<ServerCmdSwitches> kFlags[] = {
        {L"print", &ServerCmdSwitches::IsPrint},
        {L"register", &ServerCmdSwitches::IsRegister},
        {L"unregister", &ServerCmdSwitches::IsUnregister},
        {L"splash", &ServerCmdSwitches::IsSupressSplashScreen},
        {L"printBoth", &ServerCmdSwitches::IsPrintBoth},
        {L"printForm", &ServerCmdSwitches::IsPrintFormOnly},
        {L"printAnswers", &ServerCmdSwitches::IsPrintAnswersOnly},
        {L"duplex", &ServerCmdSwitches::IsPrintDuplex},
        {L"noDialogs", &ServerCmdSwitches::IsPrintWithoutDialogs},
        {L"dde", &ServerCmdSwitches::IsDDE},
        {L"automation", &ServerCmdSwitches::IsAutomation},
        {L"embedded", &ServerCmdSwitches::IsEmbedded},
    };
    std::wstring state;
    AppendTexts(state, parser, kTexts);
    AppendFlags(state, parser, kFlags);
    AppendNumber(state, L"copies", parser.GetPrintCopies(), 1);
    return state.empty() ? state : state.substr(1);
}

TEST(ServerSwitchParsers, ReadLinesAlike) {
    const struct {
        const wchar_t* line;
        std::wstring state;
    } cases[] = {
        {nullptr, L""},
        {L"form.qff", L"file=" + Here(L"form.qff")},
        {L"::ODMA\\1 /fp", L"file=::ODMA\\1 print"},
        {L"/register /unregserver", L"register unregister"},
        {L"/pc=2 /pt=Tray 2 /ps=A4", L"tray=Tray page=A4 copies=2"},
        {L"/pc=x /ni /af=x", L"copies=0"},
        {L"C:\\a.anx /PRint \"/pt=a b\" /ps= /pc=2 /pc=+3", L"file=C:\\a.anx tray=a page= print copies=0"},
        {L"/unregister /regserver", L"register unregister"},
        {L"/pr /db /pb /po /pa /pd /pw /automation /dde /embedding",
         L"print splash printBoth printForm printAnswers duplex noDialogs dde automation embedded"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ServerStateOf(FillerCmdSwitchParser(c.line)), c.state) << testing::PrintToString(c.line);
        EXPECT_EQ(ServerStateOf(AutomatorCmdSwitchParser(c.line)), c.state) << testing::PrintToString(c.line);
    }
    EXPECT_EQ(ServerStateOf(FillerCmdSwitchParser(QLCmdLine(L"\"C:\\a b.qff\" /pr"))),
              L"file=C:\\a b.qff print");
    EXPECT_EQ(ServerStateOf(AutomatorCmdSwitchParser(QLCmdLine(L"::ODMA\\7 /"))), L"file=::ODMA\\7");
    AutomatorCmdSwitchParser copy(nullptr);
    copy = AutomatorCmdSwitchParser(L"C:\\a.qff /pt=lower");
    EXPECT_EQ(ServerStateOf(copy), L"file=C:\\a.qff tray=lower");
}

// Waits for a message box of that title, answers its text and closes it; empty when none comes.
std::wstring AnswerMessageBox(const wchar_t* title) {
    for (int tries = 0; tries < 6000; ++tries, ::Sleep(10)) {
        const HWND box = ::FindWindowW(nullptr, title);
        if (!box) continue;
        wchar_t text[256] = {};
        constexpr int kMessageText = 0xFFFF;
        ::GetDlgItemTextW(box, kMessageText, text, static_cast<int>(std::size(text)));
        ::PostMessageW(box, WM_CLOSE, 0, 0);
        return text;
    }
    return {};
}

TEST(SwitchParsers, CheckThemselves) {
    const Main parser(nullptr);
    parser.CheckThis(
        static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(&parser)));  // no box, or it hangs
    auto text = std::async(std::launch::async, AnswerMessageBox, L"Bad Mojo");
    parser.CheckThis(0);
    EXPECT_EQ(text.get(),
              L"this pointer is corrupt\nThis is a serious medical condition.\nPlease report this to Orrin.");
}

}  // namespace
