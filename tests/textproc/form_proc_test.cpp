#include "textproc/form_proc.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "settings/preferences.h"
#include "tests/support/private_registry.h"
#include "textproc/form_proc_program.h"
#include "textproc/odma.h"

namespace {

void Install(FormProc processor) {
    WriteQLRegString(GetFormProcRegName(processor).data(), L"Template Files", L"W:\\Templates");
}

class Processors : public testing::Test {
  protected:
    PrivateRegistry registry_;
    SettingsProcess process_;
    SettingsThread thread_;
};

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
    for (const FormProc processor : {FP_WP13, FP_WP14, FP_WP15, FP_WP16, FP_WP17}) {
        const std::wstring version = std::to_wstring(processor + 7), name = L"WordPerfect " + version;
        EXPECT_EQ(L"Word Proc\\" + name + L"|" + name + L"|wpwin" + version + L".exe|WordPerfect." + version +
                      L".00|WPWin" + version + L"_Macros|Commands|WP" + version + L"Doc",
                  Facts(processor));
        EXPECT_EQ(FT_WP_TEMPLATE, GetTextFileType(processor));
    }
    const std::pair<FormProc, std::wstring> words[] = {{FP_WORD2003, L"Word 2003"},
                                                       {FP_WORD2007, L"Word 2007"},
                                                       {FP_WORD2010, L"Word 2010"},
                                                       {FP_WORD2013, L"Word 2013"}};
    for (const auto& [processor, name] : words) {
        EXPECT_EQ(
            L"Word Proc\\" + name + L"|" + name + L"|winword.exe|OpusApp|WinWord|System|Word.Document.8",
            Facts(processor));
        EXPECT_EQ(FT_WORD_TEMPLATE, GetTextFileType(processor));
    }
    EXPECT_STREQ(L"Quillet6AutomatorWnd32", GetFormProcClass(FP_AUTOMATOR));
    EXPECT_STREQ(L"qlauto.exe", GetFormProcExe(FP_AUTOMATOR));
    EXPECT_STREQ(L"Quillet6FillerWnd32", GetFormProcClass(FP_FILLER));
    EXPECT_STREQ(L"qlfill.exe", GetFormProcExe(FP_FILLER));
    EXPECT_STREQ(L"Quillet Automator", GetFormProcRegKey(FP_FILLER));
    EXPECT_STREQ(L"", GetFormProcName(FP_TEXT));
    for (const int none : {0, 5, 11, 27, 201, -1}) {
        const auto processor = static_cast<FormProc>(none);
        EXPECT_TRUE(Facts(processor).ends_with(L"|-|-|-|-|-|-"));
        EXPECT_EQ(FT_NONE, GetTextFileType(processor));
        EXPECT_TRUE(GetFormProcTmplDir(processor).isNull());
    }
}

TEST_F(Processors, DirectoriesAreTrimmedAndEndInOneBackslash) {
    WriteQLRegString(L"Locations", L"Template Files", L"T:\\Templates");
    WriteQLRegString(L"Locations", L"Form Document Files", L"T:\\Forms");
    const RWWString documents = GetFormProcDocDir(FP_WORD2003);
    EXPECT_TRUE(documents.length() > 1 && documents.view().ends_with(L'\\')) << "the personal documents";
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
    EXPECT_TRUE(GetFormProcDocDir(FP_NONE).isNull());
}

// Everything that is found and chosen, in the order of the columns below.
std::vector<int> Found() {
    return {GetMSWordVersion(),
            GetWordPerfectVersion(),
            GetInstalledTextFormProc(),
            GetDefaultTextFormProc(),
            CanSaveInWord2007Format(),
            GetFormProcType(FT_DOCX_TEMPLATE),
            GetFormProcType(FT_WORD_TEMPLATE),
            GetFormProcType(FT_WP_TEMPLATE),
            GetFormProcType(FT_TEXT_TEMPLATE),
            GetSendDocToTextFormProc(L"a.docx"),
            GetSendDocToTextFormProc(L"a.wpd"),
            GetSendDocToTextFormProc(L"a.txt")};
}

struct Choice {
    std::vector<int> installed;
    const wchar_t* usual;  // the preference "Default"
    bool sendByKind;       // the preference "Send to Default"
    std::vector<int> found;
};

const Choice kChoices[] = {
    // Word, WP, any, default, saves docx; for docx, dot, wpt, ttx; to send docx, wpd, txt
    {{}, L"", true, {0, 0, 0, 0, false, 0, 0, 0, 200, 0, 0, 0}},
    {{}, L"Word 2010", false, {0, 0, 0, 0, false, 0, 0, 0, 200, 0, 0, 0}},
    {{23, 25}, L"", false, {25, 0, 25, 0, true, 25, 25, 0, 200, 25, 25, 25}},
    {{23, 25}, L"word 2003", false, {25, 0, 25, 23, true, 25, 23, 0, 200, 23, 23, 23}},
    {{23, 25}, L"Word 2003", true, {25, 0, 25, 23, true, 25, 23, 0, 200, 25, 23, 23}},
    {{23, 6, 8}, L"WordPerfect 13", true, {23, 8, 23, 6, false, 0, 23, 6, 200, 6, 6, 6}},
    {{26, 8, 10}, L"Word 2013", true, {26, 10, 26, 26, true, 26, 26, 10, 200, 26, 10, 26}},
    {{9}, L"Word 2013", false, {0, 9, 9, 0, false, 0, 0, 9, 200, 9, 9, 9}},
    {{24}, L"Quillet Automator", false, {24, 0, 24, 0, true, 24, 24, 0, 200, 24, 24, 24}},
};

TEST(ProcessorChoice, FollowsThePreferences) {
    for (const Choice& choice : kChoices) {
        SCOPED_TRACE(&choice - kChoices);
        const PrivateRegistry registry;
        const SettingsProcess process;
        const SettingsThread thread;
        for (const int processor : choice.installed) Install(static_cast<FormProc>(processor));
        WriteQLRegString(L"Word Proc", L"Default", choice.usual);
        WriteQLRegBool(L"Word Proc", L"Send to Default", choice.sendByKind);
        EXPECT_EQ(choice.found, Found());
        EXPECT_EQ(GetTextFileType(GetDefaultTextFormProc()), GetDefaultTextFileType());
        for (const int form : {6, 7}) EXPECT_EQ(FP_AUTOMATOR, GetFormProcType(static_cast<FileType>(form)));
        for (const int none : {0, 8, 16, 26, 39, 64, -1}) {
            EXPECT_EQ(FP_NONE, GetFormProcType(static_cast<FileType>(none)));
        }
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
        {L"C:\\Program Files\\Word\\winword.exe", L"C:\\Program Files\\Word\\winword.exe", L""},
        {L"C:\\PROGRA~1\\winword.exe /x a b", L"C:\\PROGRA~1\\winword.exe", L"/x a b"},
        {L"C:\\Program Files\\qlauto /x", L"C:\\Program Files\\qlauto", L"/x"},
        {L"C:\\My.exe folder\\word.exe /x", L"C:\\My.exe folder\\word.exe", L"/x"},
        {L"%1", L"%1", L""},
        {L"\"%1\"", L"%1", L""},
    };
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
