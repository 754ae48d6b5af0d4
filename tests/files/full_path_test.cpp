#include "files/full_path.h"

#include <gtest/gtest.h>

#include "tests/support/private_registry.h"

namespace {

class FullPath : public SettingsTest {
  protected:
    FullPath() {
        PrivateRegistry::Put(kUser, L"Locations", L"Template Files", L"T:\\Templates\\");
        PrivateRegistry::Put(kUser, L"Locations", L"Answer Files", L"A:\\Answers");
        PrivateRegistry::Put(kUser, L"Locations", L"Shared", L"S:\\User\\");
        PrivateRegistry::Put(kMachine, L"Locations", L"Shared", L"S:\\Machine");
        PrivateRegistry::Put(kMachine, L"Locations", L"Common", L"S:\\Common");
        PrivateRegistry::Put(kUser, L"Word Proc\\Word 2010", L"Template Files", L"W:\\Word");
        PrivateRegistry::Put(kUser, L"Word Proc\\WordPerfect 15", L"Template Files", L"W:\\Perfect");
        PrivateRegistry::Put(kUser, L"Word Proc", L"Default", L"Word 2010");
    }
    // Without a closing zero.
    static void PutFormer(HKEY root, const wchar_t* name, const std::wstring& path, DWORD type = REG_SZ) {
        PrivateRegistry::PutBytes(root, L"SOFTWARE\\Brellwick\\Quillet 6\\Locations", name, type, path.data(),
                                  path.size() * sizeof(wchar_t));
    }
};

TEST_F(FullPath, IsCompletedByRule) {
    const wchar_t* const cases[][4] = {{L"", L"D:\\Dir", L"docx", L""},
                                       {L"/x /y", L"D:\\Dir", L"docx", L""},
                                       {L"http://srv/a", L"D:\\Dir", L"docx", L"http://srv/a"},
                                       {L"PLUGIN\\{abc}", L"D:\\Dir", L"docx", L"PLUGIN\\{abc}"},
                                       {L"C:\\a.txt", L"D:\\Dir", nullptr, L"C:\\a.txt"},
                                       {L"C:\\a.txt", L"D:\\Dir", L".docx", L"C:\\a.docx"},
                                       {L"\\\\srv\\share\\a", nullptr, L"docx", L"\\\\srv\\share\\a.docx"},
                                       {L"\\sub\\a.ans", L"D:\\Dir", nullptr, L"T:\\Templates\\sub\\a.ans"},
                                       {L"\\a.ans", nullptr, L"anx", L"T:\\Templates\\a.anx"},
                                       {L"^Shared\\x.docx", L"D:\\Dir", nullptr, L"S:\\User\\x.docx"},
                                       {L"^Common/sub\\x", nullptr, L"", L"S:\\Common/sub\\x."},
                                       {L"^Unknown\\x.docx", L"D:\\Dir", nullptr, L"\\x.docx"},
                                       {L"^x.docx", L"D:\\Dir", nullptr, L"D:\\Dir\\^x.docx"},
                                       {L"sub\\a.ans", L"D:\\Dir\\", nullptr, L"D:\\Dir\\sub\\a.ans"},
                                       {L"a.docx", L"", nullptr, L"W:\\Word\\a.docx"},
                                       {L"a.rtf", nullptr, nullptr, L"W:\\Word\\a.rtf"},
                                       {L"a.wpt", nullptr, nullptr, L"W:\\Perfect\\a.wpt"},
                                       {L"a.qft", nullptr, nullptr, L"T:\\Templates\\a.qft"},
                                       {L"a.ttx", nullptr, nullptr, L"T:\\Templates\\a.ttx"},
                                       {L"a.qll", nullptr, nullptr, L"W:\\Word\\a.qll"},
                                       {L"a.ans", nullptr, nullptr, L"A:\\Answers\\a.ans"},
                                       {L"sub\\a.anx", nullptr, nullptr, L"A:\\Answers\\sub\\a.anx"},
                                       {L"a.ant", nullptr, L"docx", L"A:\\Answers\\a.docx"},
                                       {L"a.doc", nullptr, nullptr, L"T:\\Templates\\a.doc"}};
    for (const auto& [text, directory, extension, full] : cases) {
        const RWWString name = MakeFullPath(RWWString{text}, directory, extension).GetPathAndFileName();
        EXPECT_EQ(RWWString(full), name) << testing::PrintToString(text);
        EXPECT_EQ(name, MakeFullPath(std::wstring(text), directory, extension).GetPathAndFileName());
    }
}

TEST_F(FullPath, KeepsTheSwitchesAndTheNameItWasGiven) {
    const QLCmdLine line(L"\"my answers.anx\" /ni /sa");
    const QLCmdLine full = MakeFullPath(line, nullptr, nullptr);
    EXPECT_EQ(RWWString(L"A:\\Answers\\my answers.anx /ni /sa"), full.GetCmdLine());
    EXPECT_EQ(RWWString(L"my answers.anx"), line.GetPathAndFileName());
    EXPECT_EQ(RWWString(L"A:\\Answers\\a.anx"),
              MakeFullPath(QLFileName(L"a.ans"), nullptr, L"anx").GetCmdLine());
    EXPECT_EQ(RWWString(L"/x"), MakeFullPath(L"/x", L"D:\\Dir", L"b").GetSwitches());
}

TEST_F(FullPath, NamedLocationsAreTheUsersThenTheMachinesThenTheFormerOnes) {
    PutFormer(kMachine, L"Shared", L"F:\\Machine");
    PutFormer(kMachine, L"Former", L"F:\\Machine");
    PutFormer(kUser, L"Former", L"F:\\User");
    PutFormer(kUser, L"Own", std::wstring(256, L'x'));
#ifdef _WIN32  // the limit is in bytes, and natively a unit has four
    PutFormer(kUser, L"Long", std::wstring(257, L'x'));
#endif
    EXPECT_EQ(RWWString(L"S:\\User"), GetCaretPath(L"Shared"));
    EXPECT_EQ(RWWString(L"S:\\Common"), GetCaretPath(L"common"));
    EXPECT_EQ(RWWString(L"F:\\Machine"), GetCaretPath(L"Former"));
    EXPECT_EQ(256U, GetCaretPath(L"Own").length());
    PutFormer(kUser, L"Number", L"AA", REG_DWORD);
    for (const wchar_t* none : {L"", L"Long", L"Number"}) EXPECT_TRUE(GetCaretPath(none).isNull()) << none;
}

}  // namespace
