#include "textproc/form_proc_program.h"

#include <gtest/gtest.h>

#include "settings/preferences.h"
#include "tests/support/private_registry.h"
#include "tests/support/test_folder.h"

namespace {

// As installers write it: without a closing zero.
void PutOpenCommand(const std::wstring& command) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the system's own
    PrivateRegistry::PutBytes(HKEY_CLASSES_ROOT, L"Word.Document.8\\shell\\open\\command", nullptr, REG_SZ,
                              command.data(), command.size() * sizeof(wchar_t));
}

// The open commands of all users, in a key of the test's own.
struct PrivateClasses {
    // NOLINTBEGIN(performance-no-int-to-ptr): the system's own
    PrivateClasses() { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, key.get()); }
    ~PrivateClasses() { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }
    // NOLINTEND(performance-no-int-to-ptr)
    PrivateClasses& operator=(PrivateClasses&&) = delete;

    const ql::UniqueRegKey key = PrivateRegistry::Create(kUser, L"Classes");
};

using ProcessorProgram = SettingsTest;

TEST_F(ProcessorProgram, IsThePreferenceThenTheOpenCommandOfAFileThatExists) {
    const TestFolder folder;
    const PrivateClasses classes;
    std::filesystem::create_directory(folder / L"a folder");
    const std::wstring preferred = folder / L"preferred.exe", registered = folder / L"a folder\\winword.EXE";
    PutBytes(preferred, "");
    PutBytes(registered, "");

    EXPECT_TRUE(GetFormProcPath(FP_WORD2010).IsNull());
    PutOpenCommand(folder / L"none.exe \"%1\"");
    EXPECT_TRUE(GetFormProcPath(FP_WORD2010).IsNull());
    PutOpenCommand(registered + L" /n \"%1\"");
    EXPECT_EQ(RWWString(registered), GetFormProcPath(FP_WORD2010).GetPathAndFileName());
    EXPECT_EQ(RWWString(L"/n"), GetFormProcPath(FP_WORD2003).GetSwitches());
    for (const wchar_t* none : {L"C:\\nowhere at all\\w.exe", L"C:\\windows"}) {
        WriteQLRegString(L"Word Proc\\Word 2010", L"Program File", none);
        EXPECT_EQ(RWWString(registered), GetFormProcPath(FP_WORD2010).GetPathAndFileName()) << none;
    }
    WriteQLRegString(L"Word Proc\\Word 2010", L"Program File", (L'"' + preferred + L"\" /p").c_str());
    EXPECT_EQ(RWWString(preferred + L" /p"), GetFormProcPath(FP_WORD2010).GetCmdLine());
    EXPECT_EQ(RWWString(registered), GetFormProcPath(FP_WORD2013).GetPathAndFileName());

    PutOpenCommand(registered + L" /" + std::wstring(260, L'x'));
    EXPECT_TRUE(GetFormProcPath(FP_WORD2013).IsNull()) << "longer than is read";
    WriteQLRegString(L"Word Proc\\", L"Program File", preferred.c_str());
    for (const FormProc none : {FP_NONE, FP_TEXT}) EXPECT_TRUE(GetFormProcPath(none).IsNull());
}

}  // namespace
