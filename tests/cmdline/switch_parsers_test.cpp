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
        {L"letter.qft /is=u /is=", L"tplPath=" + Here(L"letter.qft")},
        {L"C:\\a.anx /ni", L"answerFile=C:\\a.anx noInterview"},
        {L"C:\\a.ant /as /hl /mi", L"tplPath=C:\\a.ant mode=1 type=1"},
        {L"C:\\a.qla /nx /ex", L"qLAFile=C:\\a.qla mode=0 exit=1"},
        {L"::ODMA\\123 /an /slw", L"tplPath=::ODMA\\123 noInterview mode=3"},
        {L"C:\\a.qft /tf=C:\\b.qft", L"tplPath=C:\\b.qft"},
        {L"/af=x.anx /df=y.anx",
         L"answerFile=" + In(AnswerDirectory, L"x.anx") + L" defAnsFile=" + In(AnswerDirectory, L"y.anx")},
        {L"/of=out.docx /lf=mylib",
         L"outputFile=" + Here(L"out.docx") + L" library=" + In(LibraryDirectory, L"mylib.qll") + L" mode=3"},
        {L"/if=setup.qli", L"installationFile=" + In(ProgramDirectory, L"setup.qli")},
        {L"/tf=::ODMA\\1 /of=::ODMA\\2 /df=::ODMA\\3 /if=::ODMA\\4 /af=::ODMA\\9",
         L"tplPath=::ODMA\\1 answerFile=::ODMA\\9 outputFile=::ODMA\\2 installationFile=::ODMA\\4 "
         L"defAnsFile=::ODMA\\3"},
        {L"/qi=c.qli /qla=b.qla /qa=a.qla",
         L"qLIFile=c.qli qLAFile=b.qla mode=3"},  // the order of the table, not of the line
        {L"/as /qs /ll /register /unregserver", L"lockLib mode=3 type=2"},
        {L"/automation /dde", L"dDE automation mode=0"},
        {L"/embedding /qli=x.qli", L"qLIFile=x.qli embedded mode=3"},
        {L"/nlw /slw /pc=-2",
         L"mode=1 copies=0"},  // slw is claimed by sl, which comes after the mode was set
        {L"/regserver /unregister /is=Unanswered", L"ask=1"},
        {L"/pc=3a /pt=Tray 2 /ps=\"A4 wide\"", L"tray=Tray pageSize=A4 copies=3 ignored=2"},
#ifdef _WIN32  // natively a long is longer
        {L"/pc=99999999999", L"copies=2147483647"},
#endif
        {L"/ov=a.qlo /ov=b.qlo /pc=2 /ex /register",
         L"register mode=0 exit=0 overlay=b.qlo copies=2"},  // a repeated value: the last
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
         L"saveAnswers printAnswersOnly suppressInstallation suggestSaveSet"}};
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
    const Line lines[] = {{nullptr, L""},
                          {L"form.qff /unregserver", L"fileName=" + Here(L"form.qff") + L" unregister"},
                          {L"::ODMA\\1 /fp /register", L"fileName=::ODMA\\1 print register"},
                          {L"/unregister /regserver", L"register unregister"},
                          {L"C:\\a.anx /PRint \"/pt=a b\" /ps= /pc=2 /pc=+3 /ni /af=x",
                           L"fileName=C:\\a.anx tray=a pageSize= print copies=0 ignored=/ni ignored=/af=x"},
                          {L"/pr /db /pb /po /pa /pd /pw /automation /dde /embedding /pc=2",
                           L"print supressSplashScreen printBoth printFormOnly printAnswersOnly printDuplex "
                           L"printWithoutDialogs dDE automation embedded copies=2"}};
    for (const auto& [line, state] : lines) {
        EXPECT_EQ(state, StateOf(FillerCmdSwitchParser(line))) << testing::PrintToString(line);
        EXPECT_EQ(state, StateOf(AutomatorCmdSwitchParser(line))) << testing::PrintToString(line);
    }
    EXPECT_EQ(L"fileName=::ODMA\\7", StateOf(FillerCmdSwitchParser(QLCmdLine(L"::ODMA\\7 /"))));
    EXPECT_EQ(L"ignored=/x", StateOf(AutomatorCmdSwitchParser(QLCmdLine(L"/x"))));
}

}  // namespace
