#include "prefs/directories.h"

#include <gtest/gtest.h>

#include "settings/preferences.h"
#include "tests/settings/private_registry.h"

namespace {

constexpr auto kBeyond = static_cast<QuilletDirectories>(15);
constexpr auto kBefore = static_cast<QuilletDirectories>(-1);

class Directories : public testing::Test {
  protected:
    static RWWString Below(QuilletDirectories base, const wchar_t* tail) {
        std::wstring directory = CQlDir::GetDirectory(base).str();
        directory.resize(directory.find_last_not_of(L'\\') + 1);
        return RWWString(directory + tail);
    }

    PrivateRegistry registry_;
    SettingsProcess process_;
    SettingsThread thread_;
};

TEST_F(Directories, HaveDefaultsBelowTheDocumentsFoldersAndTheProgram) {
    EXPECT_FALSE(CQlDir::GetDirectory(PersonalDocumentsDirectory).isNull());
    EXPECT_FALSE(CQlDir::GetDirectory(PublicDocumentsDirectory).isNull());
    EXPECT_NE(CQlDir::GetDirectory(PersonalDocumentsDirectory),
              CQlDir::GetDirectory(PublicDocumentsDirectory));
    const struct {
        QuilletDirectories kind;
        QuilletDirectories base;
        const wchar_t* tail;
    } cases[] = {
        {JavaScriptDirectory, ProgramDirectory, L"\\ServerFiles"},
        {PersonalDictionaryFile, PersonalDocumentsDirectory,
         L"\\Quillet Author\\Spelling\\Personal Dictionary.tlx"},
        {LibraryDirectory, PersonalDocumentsDirectory, L"\\Quillet Author"},
        {TemplateSetDirectory, PublicDocumentsDirectory, L"\\Quillet Author\\Templates"},
        {FormDocumentDirectory, PersonalDocumentsDirectory, L""},
        {AnswerDirectory, PersonalDocumentsDirectory, L"\\Quillet Author\\Answers"},
        {AnswerDirectoryAlias, PersonalDocumentsDirectory, L"\\Quillet Author\\Answers"},
        {TemplateDirectory, PersonalDocumentsDirectory, L"\\Quillet Author\\Templates"},
        {PublishDirectory, PersonalDocumentsDirectory, L"\\Quillet Author\\Publish"},
        {CatalogDirectory, PublicDocumentsDirectory, L"\\Quillet Author\\Catalog Files"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Below(c.base, c.tail), CQlDir::GetDirectory(c.kind)) << "kind " << c.kind;
    }
}

TEST_F(Directories, ArePreferencesLessOneTrailingBackslash) {
    const struct {
        QuilletDirectories kind;
        const wchar_t* section;
        const wchar_t* entry;
    } cases[] = {
        {JavaScriptDirectory, L"Locations", L"JavaScript Files"},
        {PersonalDictionaryFile, L"Spelling", L"Personal Dictionary"},
        {LibraryDirectory, L"Locations", L"Library Files"},
        {TemplateSetDirectory, L"Locations", L"Template Sets"},
        {FormDocumentDirectory, L"Locations", L"Form Document Files"},
        {AnswerDirectory, L"Locations", L"Answer Files"},
        {TemplateDirectory, L"Locations", L"Template Files"},
        {PublishDirectory, L"Locations", L"Publish Settings Files"},
        {CatalogDirectory, L"Locations", L"Catalog Files"},
    };
    for (const auto& c : cases) {
        const std::wstring stored = L"D:\\Work " + std::to_wstring(c.kind);
        registry_.Put(kMachine, c.section, c.entry, stored + L'\\');
        EXPECT_EQ(RWWString(stored), CQlDir::GetDirectory(c.kind)) << "kind " << c.kind;
    }
    EXPECT_EQ(L"D:\\Work 7", CQlDir::GetDirectory(AnswerDirectoryAlias));
}

TEST_F(Directories, OfTheProgramIsTheLibrarysFolderWithItsBackslash) {
    const RWWString program = CQlDir::GetDirectory(ProgramDirectory);
    EXPECT_TRUE(program.view().ends_with(L'\\'));
    EXPECT_EQ(program, CQlDir::GetDirectory(ProgramDirectoryCopy));
#ifdef _WIN32
    const RWWString library = program + L"Quillet.Platform.Native.Util.dll";
    EXPECT_EQ(::GetModuleHandleW(L"Quillet.Platform.Native.Util.dll"), ::GetModuleHandleW(library.data()));
#endif
}

// The one test that asks for this kind: its first answer stays for the life of the process.
TEST_F(Directories, OfProgramFilesIsReadOnce) {
    registry_.Put(kUser, L"Locations", L"Program Files", L"D:\\Programs\\");
    EXPECT_EQ(L"D:\\Programs", CQlDir::GetDirectory(ProgramFilesPreference));
    WriteQLRegString(L"Locations", L"Program Files", L"E:\\Elsewhere");
    EXPECT_EQ(L"D:\\Programs", CQlDir::GetDirectory(ProgramFilesPreference));
}

TEST_F(Directories, AreNamedAsInCodeAndEndAtFourteen) {
    EXPECT_STREQ(L"ProgramDirectory", CQlDir::GetName(ProgramDirectory));
    EXPECT_STREQ(L"ProgramFilesPreference", CQlDir::GetName(ProgramFilesPreference));
    for (QuilletDirectories kind : {kBefore, kBeyond}) {
        EXPECT_EQ(nullptr, CQlDir::GetName(kind));
        EXPECT_EQ(L"", CQlDir::GetDirectory(kind));
        CQlDir::SetRecentDirectory(kind, L"D:\\Nowhere");
        EXPECT_EQ(L"", CQlDir::GetRecentDirectory(kind));
    }
}

TEST_F(Directories, UsedLastAreRememberedPerKind) {
    CQlDir::SetRecentDirectory(PublishDirectory, L"");
    EXPECT_EQ(CQlDir::GetDirectory(PublishDirectory), CQlDir::GetRecentDirectory(PublishDirectory));
    WriteQLRegString(L"Locations", L"Publish Settings Files", L"D:\\New");
    EXPECT_NE(L"D:\\New", CQlDir::GetRecentDirectory(PublishDirectory));
    CQlDir::SetRecentDirectory(PublishDirectory, L"D:\\Recent\\");
    EXPECT_EQ(L"D:\\Recent\\", CQlDir::GetRecentDirectory(PublishDirectory));
    EXPECT_EQ(L"D:\\New", CQlDir::GetDirectory(PublishDirectory));
}

TEST_F(Directories, OfTheLibraryUsedLastIsAPreference) {
    EXPECT_EQ(CQlDir::GetDirectory(LibraryDirectory), CQlDir::GetLibraryDirectory());
    CQlDir::SetRecentDirectory(LibraryDirectory, L"D:\\Library\\");
    EXPECT_EQ(L"D:\\Library", CQlDir::GetLibraryDirectory());
    EXPECT_EQ(L"D:\\Library", CQlDir::GetRecentDirectory(LibraryDirectory));
    EXPECT_EQ(L"D:\\Library\\", GetQLRegString(L"Recent", L"Library Folder", nullptr));
    CQlDir::SetLibraryDirectory(L"");
    EXPECT_EQ(CQlDir::GetDirectory(LibraryDirectory), CQlDir::GetRecentDirectory(LibraryDirectory));
}

TEST_F(Directories, HaveADisplayForm) {
    const RWWString personal = Below(PersonalDocumentsDirectory, L"");
    const RWWString common = Below(PublicDocumentsDirectory, L"");
    const struct {
        RWWString path;
        const wchar_t* display;
    } cases[] = {
        {personal + L"\\letters\\a.docx", L"Documents\\letters\\a.docx"},
        {personal + L"\\", L"Documents\\"},
        {common + L"\\Quillet Author", L"Public Documents\\Quillet Author"},
        {L"D:\\Documents\\letters", L"D:\\Documents\\letters"},
        {L"", L""},
        {L"\\", L"\\"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.display, CQlDir::ConvertPathToSpecialDisplayPath(c.path));
        EXPECT_EQ(c.path, CQlDir::ConvertSpecialDisplayPathToPath(c.display));
    }
}

TEST_F(Directories, AreComparedWithDisplayNamesIgnoringCaseAndByTheLeadingTextAlone) {
    const RWWString personal = Below(PersonalDocumentsDirectory, L"");
    const struct {
        const wchar_t* display;
        RWWString path;
    } undisplayed[] = {
        {L"documents\\letters", personal + L"\\letters"},
        {L"DOCUMENTS", personal + L"\\"},
        {L"DocumentsOld\\x", personal + L"\\Old\\x"},
        {L"Documents\\\\x", personal + L"\\\\x"},
        {L"public DOCUMENTS\\x", Below(PublicDocumentsDirectory, L"\\x")},
        {L"Document", L"Document"},
    };
    for (const auto& c : undisplayed) EXPECT_EQ(c.path, CQlDir::ConvertSpecialDisplayPathToPath(c.display));
    std::wstring lower = personal.str();
    for (wchar_t& unit : lower) {
        if (unit >= L'A' && unit <= L'Z') unit = static_cast<wchar_t>(unit - L'A' + L'a');
    }
    EXPECT_EQ(L"Documents\\x", CQlDir::ConvertPathToSpecialDisplayPath(RWWString(lower + L"\\x")));
    EXPECT_EQ(L"Documents\\", CQlDir::ConvertPathToSpecialDisplayPath(personal));
    EXPECT_EQ(L"Documents\\Old\\x", CQlDir::ConvertPathToSpecialDisplayPath(personal + L"Old\\x"));
}

}  // namespace
