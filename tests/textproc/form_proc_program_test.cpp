#include "textproc/form_proc_program.h"

#include <gtest/gtest.h>

#include "settings/preferences.h"
#include "tests/support/private_registry.h"
#include "tests/support/test_folder.h"

namespace {

// The open commands of all users, in a key of this test alone.
class PrivateClasses {
  public:
    PrivateClasses() : key_(PrivateRegistry::Create(kUser, kHome)) {
        EXPECT_EQ(ERROR_SUCCESS, ::RegOverridePredefKey(Root(), key_.get()));
    }
    ~PrivateClasses() {
        ::RegOverridePredefKey(Root(), nullptr);
        ::RegDeleteTreeW(kUser, kHome);
    }
    PrivateClasses(const PrivateClasses&) = delete;
    PrivateClasses& operator=(const PrivateClasses&) = delete;

    static void Put(const std::wstring& documentClass, const std::wstring& command) {
        PrivateRegistry::PutBytes(Root(), documentClass + L"\\shell\\open\\command", nullptr, REG_SZ,
                                  command.data(),
                                  command.size() * sizeof(wchar_t));  // without a closing zero
    }

  private:
    static constexpr const wchar_t* kHome = L"Classes";
    static HKEY Root() { return HKEY_CLASSES_ROOT; }  // NOLINT(performance-no-int-to-ptr): the system's own

    ql::UniqueRegKey key_;
};

TEST(ProcessorProgram, IsThePreferenceThenTheOpenCommandOfAFileThatExists) {
    const TestFolder folder;
    const PrivateRegistry registry;
    const PrivateClasses classes;
    const SettingsProcess process;
    const SettingsThread thread;
    std::filesystem::create_directory(folder / L"a folder");
    const std::wstring preferred = folder / L"preferred.exe", registered = folder / L"a folder\\winword.exe";
    PutBytes(preferred, "");
    PutBytes(registered, "");

    EXPECT_TRUE(GetFormProcPath(FP_WORD2010).IsNull());
    PrivateClasses::Put(L"Word.Document.8", folder / L"none.exe \"%1\"");
    EXPECT_TRUE(GetFormProcPath(FP_WORD2010).IsNull());
    PrivateClasses::Put(L"Word.Document.8", registered + L" /n \"%1\"");
    EXPECT_EQ(RWWString(registered), GetFormProcPath(FP_WORD2010).GetPathAndFileName());
    EXPECT_EQ(RWWString(L"/n"), GetFormProcPath(FP_WORD2003).GetSwitches());
    WriteQLRegString(L"Word Proc\\Word 2010", L"Program File", L"C:\\nowhere at all\\w.exe");
    EXPECT_EQ(RWWString(registered), GetFormProcPath(FP_WORD2010).GetPathAndFileName());
    WriteQLRegString(L"Word Proc\\Word 2010", L"Program File", (L'"' + preferred + L"\" /p").c_str());
    EXPECT_EQ(RWWString(preferred + L" /p"), GetFormProcPath(FP_WORD2010).GetCmdLine());
    EXPECT_EQ(RWWString(registered), GetFormProcPath(FP_WORD2013).GetPathAndFileName());

    PrivateClasses::Put(L"Word.Document.8", registered + L" /" + std::wstring(260, L'x'));
    EXPECT_TRUE(GetFormProcPath(FP_WORD2013).IsNull()) << "longer than is read";
    WriteQLRegString(L"Word Proc\\", L"Program File", preferred.c_str());
    for (const FormProc none : {FP_NONE, FP_TEXT}) EXPECT_TRUE(GetFormProcPath(none).IsNull());
}

}  // namespace
