#include "textproc/form_proc.h"

#include <gtest/gtest.h>

#include <tuple>

#include "prefs/directories.h"
#include "settings/preferences.h"
#include "tests/support/private_registry.h"
#include "textproc/form_proc_program.h"
#include "textproc/odma.h"

namespace {

using namespace std::string_literals;
using Processors = SettingsTest;

// Everything that is known of a processor.
std::wstring Facts(FormProc processor) {
    std::wstring facts = GetFormProcRegName(processor).str();
    for (const auto fact : {GetFormProcName, GetFormProcExe, GetFormProcClass, GetFormProcService,
                            GetFormProcTopic, GetFormProcRegKey}) {
        facts += std::wstring(L"|") + (fact(processor) ? fact(processor) : L"-");
    }
    return facts;
}

TEST_F(Processors, HaveFactsThatDifferByVersionOnlyWhereTheyShould) {
    for (const auto& [processor, version] : {std::pair(FP_WP13, L"13"s),
                                             {FP_WP14, L"14"},
                                             {FP_WP15, L"15"},
                                             {FP_WP16, L"16"},
                                             {FP_WP17, L"17"}}) {
        const std::wstring name = L"WordPerfect " + version;
        EXPECT_EQ(L"Word Proc\\" + name + L"|" + name + L"|wpwin" + version + L".exe|WordPerfect." + version +
                      L".00|WPWin" + version + L"_Macros|Commands|WP" + version + L"Doc",
                  Facts(processor));
        EXPECT_EQ(FT_WP_TEMPLATE, GetTextFileType(processor));
    }
    const wchar_t* const word = L"|winword.exe|OpusApp|WinWord|System|Word.Document.8";
    const wchar_t* const server = L"|QuilformServer|QuilformCommand|Quillet Automator";
    const std::tuple<FormProc, const wchar_t*, std::wstring, FileType> others[] = {
        {FP_WORD2003, L"Word 2003", word, FT_WORD_TEMPLATE},
        {FP_WORD2007, L"Word 2007", word, FT_WORD_TEMPLATE},
        {FP_WORD2010, L"Word 2010", word, FT_WORD_TEMPLATE},
        {FP_WORD2013, L"Word 2013", word, FT_WORD_TEMPLATE},
        {FP_AUTOMATOR, L"Quillet Automator", L"|qlauto.exe|Quillet6AutomatorWnd32" + std::wstring(server),
         FT_NONE},
        {FP_FILLER, L"Quillet Filler", L"|qlfill.exe|Quillet6FillerWnd32" + std::wstring(server), FT_NONE}};
    for (const auto& [processor, name, facts, type] : others) {
        EXPECT_EQ(std::wstring(L"Word Proc\\") + name + L"|" + name + facts, Facts(processor));
        EXPECT_EQ(type, GetTextFileType(processor)) << name;
    }
    EXPECT_STREQ(L"", GetFormProcName(FP_TEXT));
    for (const int none : {0, 5, 11, 27, 201, -1}) {
        const auto processor = static_cast<FormProc>(none);
        EXPECT_EQ(L"Word Proc\\|-|-|-|-|-|-", Facts(processor)) << none;
        EXPECT_EQ(FT_NONE, GetTextFileType(processor)) << none;
        EXPECT_TRUE(GetFormProcTmplDir(processor).isNull()) << none;
        EXPECT_TRUE(GetFormProcDocDir(processor).isNull()) << none;
    }
}

TEST_F(Processors, DirectoriesAreTrimmedAndEndInOneBackslash) {
    WriteQLRegString(L"Locations", L"Template Files", L"T:\\Templates");
    WriteQLRegString(L"Locations", L"Form Document Files", L"T:\\Forms");
    EXPECT_EQ(CQlDir::GetDirectory(PersonalDocumentsDirectory) + L"\\", GetFormProcDocDir(FP_WORD2003));
    const wchar_t* const cases[][2] = {
        {L"W:\\Dir", L"W:\\Dir\\"}, {L"W:\\Dir\\", L"W:\\Dir\\"}, {L"  W:\\Dir\\  ", L"W:\\Dir\\"},
        {L"W:\\", L"W:\\"},         {L" a b ", L"a b\\"},         {L"W:/Dir/", L"W:/Dir/\\"}};
    for (const auto& [stored, directory] : cases) {
        WriteQLRegString(L"Word Proc\\Word 2010", L"Template Files", stored);
        WriteQLRegString(L"Word Proc\\Word 2010", L"Document Files", stored);
        EXPECT_EQ(RWWString(directory), GetFormProcTmplDir(FP_WORD2010));
        EXPECT_EQ(RWWString(directory), GetFormProcDocDir(FP_WORD2010));
    }
    WriteQLRegString(L"Word Proc\\Word 2010", L"Template Files", L"   ");
    EXPECT_TRUE(GetFormProcTmplDir(FP_WORD2010).isNull());
    EXPECT_EQ(FP_NONE, GetMSWordVersion());
    for (const FormProc own : {FP_AUTOMATOR, FP_FILLER}) {
        EXPECT_EQ(RWWString(L"T:\\Templates\\"), GetFormProcTmplDir(own));
        EXPECT_EQ(RWWString(L"T:\\Forms\\"), GetFormProcDocDir(own));
    }
}

constexpr FormProc kNone = FP_NONE, kW03 = FP_WORD2003, kW07 = FP_WORD2007, kW10 = FP_WORD2010,
                   kW13 = FP_WORD2013, kP13 = FP_WP13, kP14 = FP_WP14, kP15 = FP_WP15, kP16 = FP_WP16,
                   kP17 = FP_WP17;

// What is installed and preferred ("Default", "Send to Default"), and what is found and chosen then.
const std::tuple<std::vector<FormProc>, const wchar_t*, bool, std::vector<FormProc>> kChoices[] = {
    // Word, WordPerfect, installed, default; for docx, dot, wpt; to send docx, wpd, txt
    {{}, L"Word 2010", true, std::vector(10, kNone)},
    {{kW03, kW10}, L"", false, {kW10, kNone, kW10, kNone, kW10, kW10, kNone, kW10, kW10, kW10}},
    {{kW03, kW10}, L"word 2003", false, {kW10, kNone, kW10, kW03, kW10, kW03, kNone, kW03, kW03, kW03}},
    {{kW03, kW10}, L"Word 2003", true, {kW10, kNone, kW10, kW03, kW10, kW03, kNone, kW10, kW03, kW03}},
    {{kW03, kP13, kP15},
     L"WordPerfect 13",
     true,
     {kW03, kP15, kW03, kP13, kNone, kW03, kP13, kP13, kP13, kP13}},
    {{kW13, kP15, kP17}, L"Word 2013", true, {kW13, kP17, kW13, kW13, kW13, kW13, kP17, kW13, kP17, kW13}},
    {{kP14, kP16}, L"Word 2013", false, {kNone, kP16, kP16, kNone, kNone, kNone, kP16, kP16, kP16, kP16}},
    {{kW07}, L"Quillet Automator", false, {kW07, kNone, kW07, kNone, kW07, kW07, kNone, kW07, kW07, kW07}}};

TEST(ProcessorChoice, FollowsThePreferences) {
    for (const auto& [installed, usual, sendByKind, chosen] : kChoices) {
        SCOPED_TRACE(testing::PrintToString(installed) + testing::PrintToString(usual));
        const PrivateRegistry registry;
        const SettingsProcess process;
        const SettingsThread thread;
        for (const FormProc processor : installed)
            WriteQLRegString(GetFormProcRegName(processor).data(), L"Template Files", L"W:\\Templates");
        WriteQLRegString(L"Word Proc", L"Default", usual);
        WriteQLRegBool(L"Word Proc", L"Send to Default", sendByKind);
        EXPECT_EQ(chosen[0] != kNone && chosen[0] != kW03, CanSaveInWord2007Format());
        EXPECT_EQ(chosen,
                  (std::vector{GetMSWordVersion(), GetWordPerfectVersion(), GetInstalledTextFormProc(),
                               GetDefaultTextFormProc(), GetFormProcType(FT_DOCX_TEMPLATE),
                               GetFormProcType(FT_WORD_TEMPLATE), GetFormProcType(FT_WP_TEMPLATE),
                               GetSendDocToTextFormProc(L"a.docx"), GetSendDocToTextFormProc(L"a.wpd"),
                               GetSendDocToTextFormProc(L"a.txt")}));
        EXPECT_EQ(GetTextFileType(GetDefaultTextFormProc()), GetDefaultTextFileType());
        EXPECT_EQ(FP_TEXT, GetFormProcType(FT_TEXT_TEMPLATE));
        EXPECT_EQ(FP_AUTOMATOR, GetFormProcType(FT_FORM_TEMPLATE));
        EXPECT_EQ(FP_AUTOMATOR, GetFormProcType(FT_PDF_TEMPLATE));
        for (const int none : {0, 8, 16, 26, 39, 64, -1})
            EXPECT_EQ(kNone, GetFormProcType(static_cast<FileType>(none))) << none;
    }
}

TEST(ProcessorChoice, ByVersionText) {
    const std::pair<const wchar_t*, FormProc> cases[] = {
        {L"11.0", FP_WORD2003}, {L"12", FP_WORD2007}, {L"14.0.7015", FP_WORD2010}, {L"15.", FP_WORD2013},
        {L"13.0", FP_NONE},     {L"16.0", FP_NONE},   {L".14", FP_NONE},           {L"", FP_NONE},
        {L"x", FP_NONE},        {nullptr, FP_NONE},   {L"99999999999999", FP_NONE}};
    for (const auto& [text, processor] : cases) EXPECT_EQ(processor, GetFormProcFromVerStr(text));
}

// Open commands as installers write them; the program and the switches come out.
TEST(OpenCommands, LoseTheirDocumentAndKeepTheirProgram) {
    const wchar_t* const kWord = L"C:\\Program Files\\Word\\WINWORD.EXE";
    const wchar_t* const cases[][3] = {
        {L"", L"", L""},
        {nullptr, L"", L""},
        {L"  C:\\WP\\wpwin13.exe  ", L"C:\\WP\\wpwin13.exe", L""},
        {L"C:\\WP\\wpwin13.exe %1", L"C:\\WP\\wpwin13.exe", L""},
        {L"\"C:\\Program Files\\Word\\WINWORD.EXE\" /n /dde", kWord, L"/n /dde"},
        {L"\"C:\\Program Files\\Word\\WINWORD.EXE\" /n \"%1\"", kWord, L"/n"},
        {L"\"C:\\Program Files\\Word\\WINWORD.EXE\" /ddeex", kWord, L""},
        {L"\"C:\\Program Files\\Word\\WINWORD.EXE\" %1 /ddeex", kWord, L"%1"},
        {L"C:\\Program Files\\Word\\WINWORD.EXE /n \"%1\"", kWord, L"/n"},
        {L"C:\\Program Files\\Word\\WINWORD.EXE a b", kWord, L"a b"},
        {L"C:\\Program Files\\Word\\winword.exe", L"C:\\Program Files\\Word\\winword.exe", L""},
        {L"C:\\PROGRA~1\\winword.exe /x a b", L"C:\\PROGRA~1\\winword.exe", L"/x a b"},
        {L"C:\\Program Files\\qlauto /x", L"C:\\Program Files\\qlauto", L"/x"},
        {L"C:\\My.exe folder\\word.exe /x", L"C:\\My.exe folder\\word.exe", L"/x"},
        {L"%1", L"%1", L""},
        {L"\"%1\"", L"%1", L""}};
    for (const auto& [command, program, switches] : cases) {
        const QLCmdLine line = FormalizeFormProcCmdLine(command);
        EXPECT_EQ(RWWString(program), line.GetPathAndFileName()) << testing::PrintToString(command);
        EXPECT_EQ(RWWString(switches), line.GetSwitches()) << testing::PrintToString(command);
    }
}

using Odma = Processors;

TEST_F(Odma, IdsAreSharedByKinds) {
    const std::pair<const wchar_t*, std::vector<int>> groups[] = {
        {L"WORDPERFECT", {1, 2, 26}}, {L"MS WORD", {3, 4, 9, 10, 27, 28, 39, 40}},
        {L"QUILLETAUTO", {6, 7}},     {L"QUILLETFILLER", {30, 31, 33}},
        {L"ACROBAT", {32, 42}},       {L"QUILLET", {0, 5, 8, 16, 29, 48, 99}}};
    for (const auto& [id, kinds] : groups) {
        for (const int kind : kinds)
            EXPECT_EQ(RWWString(id), GetOdmaApplicationId(static_cast<FileType>(kind)));
        const auto first = static_cast<FileType>(kinds.front()), last = static_cast<FileType>(kinds.back());
        SetOdmaApplicationId(first, (std::wstring(id) + L" 2").c_str());
        EXPECT_EQ(RWWString(id) + L" 2", GetOdmaApplicationId(last));
        SetOdmaApplicationId(last, nullptr);
        EXPECT_EQ(RWWString(id), GetOdmaApplicationId(first));
    }
    SetOdmaApplicationId(FT_DOCX_TEMPLATE, L"W");
    EXPECT_EQ(RWWString(L"W"), GetQLRegString(L"File Mgt", L"Word Application ID", nullptr));
}

TEST_F(Odma, FormatNamesAreTheExtensionUntilTheyAreSet) {
    EXPECT_EQ(RWWString(L".doc"), GetOdmaFormatName(FT_WORD_DOCUMENT));
    SetOdmaFormatName(FT_WORD_DOCUMENT, L"Word 97");
    EXPECT_EQ(RWWString(L"Word 97"), GetOdmaFormatName(FT_WORD_DOCUMENT));
    EXPECT_EQ(RWWString(L"Word 97"), GetQLRegString(L"File Mgt", L"DOC Format Name", nullptr));
    for (const wchar_t* none : {L"", L".doc", static_cast<const wchar_t*>(nullptr)}) {
        SetOdmaFormatName(FT_WORD_DOCUMENT, L"Word 97");
        SetOdmaFormatName(FT_WORD_DOCUMENT, none);
        EXPECT_EQ(RWWString(L".doc"), GetOdmaFormatName(FT_WORD_DOCUMENT));
        EXPECT_EQ(static_cast<DWORD>(REG_NONE), PrivateRegistry::Get(L"File Mgt", L"DOC Format Name").type);
    }
    SetOdmaFormatName(FT_WORD_DOCUMENT, L".DOC");
    EXPECT_EQ(RWWString(L".DOC"), GetOdmaFormatName(FT_WORD_DOCUMENT)) << "another text than the extension";
}

}  // namespace
