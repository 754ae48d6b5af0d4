#include <gtest/gtest.h>

#include "files/full_path.h"
#include "platform/win32.h"
#include "prefs/directories.h"
#include "tests/cmdline/parser_state.h"

namespace {

using Main = QuilletCmdSwitchParser;

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

struct Line {
    const wchar_t* text;
    std::wstring state;
};

TEST(MainSwitchParser, ReadsLines) {
    const Line lines[] = {
        {nullptr, L""},
        {L"/zz \"/y z\" unknown", L"ignored=/zz ignored=/y z ignored=unknown"},
        {L"letter.qft", L"tplPath=" + Here(L"letter.qft")},
        {L"C:\\a.anx /ni", L"answerFile=C:\\a.anx noInterview"},
        {L"C:\\a.ant", L"tplPath=C:\\a.ant"},
        {L"C:\\a.qla", L"qLAFile=C:\\a.qla"},
        {L"::ODMA\\123 /an", L"tplPath=::ODMA\\123 noInterview"},
        {L"C:\\a.qft /tf=C:\\b.qft", L"tplPath=C:\\b.qft"},
        {L"/af=x.anx /df=y.anx",
         L"answerFile=" + In(AnswerDirectory, L"x.anx") + L" defAnsFile=" + In(AnswerDirectory, L"y.anx")},
        {L"/of=out.docx /if=setup.qli",
         L"outputFile=" + Here(L"out.docx") + L" installationFile=" + In(ProgramDirectory, L"setup.qli")},
        {L"/lf=mylib", L"library=" + In(LibraryDirectory, L"mylib.qll") + L" mode=3"},
        {L"/tf=::ODMA\\1 /of=::ODMA\\2 /df=::ODMA\\3 /if=::ODMA\\4 /af=::ODMA\\9",
         L"tplPath=::ODMA\\1 answerFile=::ODMA\\9 outputFile=::ODMA\\2 installationFile=::ODMA\\4 "
         L"defAnsFile=::ODMA\\3"},
        {L"/qi=c.qli /qla=b.qla /qa=a.qla",
         L"qLIFile=c.qli qLAFile=b.qla mode=3"},  // the order of the table, not of the line
        {L"/nx /ex", L"mode=0 exit=1"},
        {L"/ex", L"mode=0 exit=0"},
        {L"/as /qs", L"type=2"},
        {L"/as", L"type=1"},
        {L"/hl /mi", L"mode=1"},
        {L"/ll", L"lockLib mode=3"},
        {L"/automation /dde /embedding", L"dDE automation embedded mode=0"},
        {L"/automation /qli=x.qli", L"qLIFile=x.qli automation mode=3"},
        {L"/nlw /slw", L"mode=1"},  // slw is claimed by sl, which comes after the mode was set
        {L"/register /unregserver", L""},
        {L"/regserver /unregister", L""},
        {L"/register", L"register"},
        {L"/is=Unanswered", L"ask=1"},
        {L"/is=u /is=", L""},
        {L"/pc=3a /pt=Tray 2 /ps=\"A4 wide\"", L"tray=Tray pageSize=A4 copies=3 ignored=2"},
        {L"/pc=-2", L"copies=0"},
#ifdef _WIN32  // natively a long is longer
        {L"/pc=99999999999", L"copies=2147483647"},
#endif
        {L"/ov=a.qlo /ov=b.qlo /pc=2", L"overlay=b.qlo copies=2"},  // a repeated value: the last
        {L"/typedesc=d /desc=\"a /b 'c'\" \"/cl=d=\"e",
         L"clauseName=d=e description=a /b 'c typeDescription=d"},  // the last quote goes
        {L"\"C:\\a /b.qft\" -tf=\"C:\\a b\\c.qft\" \"-ed=\"", L"tplPath=C:\\a b\\c.qft editFile="},
        {L"\"C:\\a b.qft\" \"/ni\"", L"tplPath=C:\\a b.qft /ni"},  // no blank right before the slash
        {L"/sto= /ed='e f'", L"outputPluginTokenId= editFile=e ignored=f'"},
        {L"/fp /pb /po /pa /pd /pw",
         L"print printBoth printFormOnly printAnswersOnly printDuplex printWithoutDialogs"},
        {L"/ff /fi /regserver /ss /nw", L"register hideAssemblyWindow suggestSaveSet"},
        {L"/kig /mo /db /sw /stw /si /cd /da /la",
         L"lockAnswers suppressUnansweredWarning supressSplashScreen currentDoc discardAnswers sendToWP "
         L"suppressInstallation keepInterviewGroupSet modelDocument"},
        // Claimed by shorter names:
        {L"/pathdesc=b /sig /sap /ssn /fia",
         L"saveAnswers printAnswersOnly suppressInstallation suggestSaveSet"},
        {L"/slw", L"mode=3"},
    };
    for (const auto& [line, state] : lines) {
        Main parser(line);
        EXPECT_EQ(state, StateOf(parser)) << testing::PrintToString(line);
    }
}

TEST(MainSwitchParser, TellsWhatWasGiven) {
    const Line lines[] = {
        {L"/hl", L""},
        {L"a.qft /af=x", L" asmSwitch answerFileSet libraryVisible"},
        {L"/qla=a /qli= /ed= /ov=", L" qLASwitch qLISwitch editSet overlay libraryVisible"}};
    for (const auto& [line, given] : lines) EXPECT_EQ(given, Flags(Main(line), kMainGiven)) << line;
}

TEST(MainSwitchParser, TakesACommandLineValueAndFurtherLines) {
    Main parser(QLCmdLine(L"\"C:\\My Files\\a.anx\" /ni /mo /kig /ov=a.qlo"));
    EXPECT_EQ(L"tplPath=C:\\My Files\\a.anx noInterview keepInterviewGroupSet modelDocument overlay=a.qlo",
              StateOf(parser));
    parser.ParseSwitches(L"/pr /ov=b.qlo");
    EXPECT_EQ(L"tplPath=C:\\My Files\\a.anx noInterview print overlay=a.qlo overlay=b.qlo", StateOf(parser))
        << "mo and kig: the last line";
    const Line lines[] = {{L"::ODMA\\7 /", L"tplPath=::ODMA\\7"},  // one character is no switch
                          {L"::ODMA\\7 /x", L"tplPath=::ODMA\\7 ignored=/x"},
                          {L"a.qft", L"tplPath=" + Here(L"a.qft")}};
    for (const auto& [line, state] : lines) {
        Main value{QLCmdLine(line)};
        EXPECT_EQ(state, StateOf(value));
    }
}

TEST(ServerSwitchParsers, ReadLinesAlike) {
    const Line lines[] = {
        {nullptr, L""},
        {L"form.qff", L"fileName=" + Here(L"form.qff")},
        {L"::ODMA\\1 /fp", L"fileName=::ODMA\\1 print"},
        {L"/register", L"register"},
        {L"/unregister /regserver", L"register unregister"},
        {L"/unregserver", L"unregister"},
        {L"C:\\a.anx /PRint \"/pt=a b\" /ps= /pc=2 /pc=+3 /ni /af=x",
         L"fileName=C:\\a.anx tray=a pageSize= print copies=0 ignored=/ni ignored=/af=x"},
        {L"/pr /db /pb /po /pa /pd /pw /automation /dde /embedding /pc=2",
         L"print supressSplashScreen printBoth printFormOnly printAnswersOnly printDuplex "
         L"printWithoutDialogs dDE automation embedded copies=2"},
    };
    for (const auto& [line, state] : lines) {
        EXPECT_EQ(state, StateOf(FillerCmdSwitchParser(line))) << testing::PrintToString(line);
        EXPECT_EQ(state, StateOf(AutomatorCmdSwitchParser(line))) << testing::PrintToString(line);
    }
    EXPECT_EQ(L"fileName=::ODMA\\7", StateOf(FillerCmdSwitchParser(QLCmdLine(L"::ODMA\\7 /"))));
    EXPECT_EQ(L"ignored=/x", StateOf(AutomatorCmdSwitchParser(QLCmdLine(L"/x"))));
}

}  // namespace
