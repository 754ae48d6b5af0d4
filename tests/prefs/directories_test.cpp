#include "prefs/directories.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <tuple>

#include "settings/preferences.h"
#include "tests/support/private_registry.h"

namespace {

constexpr auto kPersonal = PersonalDocumentsDirectory;
constexpr auto kPublic = PublicDocumentsDirectory;

using Directories = SettingsTest;

RWWString Below(QuilletDirectories base, const wchar_t* tail) {
    std::wstring directory = CQlDir::GetDirectory(base).str();
    directory.resize(directory.find_last_not_of(L'\\') + 1);
    return RWWString(directory + tail);
}

// The kind, its preference, and where it lies without one.
constexpr std::tuple<QuilletDirectories, const wchar_t*, const wchar_t*, QuilletDirectories, const wchar_t*>
    kPreferences[] = {
        {JavaScriptDirectory, L"Locations", L"JavaScript Files", ProgramDirectory, L"\\ServerFiles"},
        {PersonalDictionaryFile, L"Spelling", L"Personal Dictionary", kPersonal,
         L"\\Quillet Author\\Spelling\\Personal Dictionary.tlx"},
        {LibraryDirectory, L"Locations", L"Library Files", kPersonal, L"\\Quillet Author"},
        {TemplateSetDirectory, L"Locations", L"Template Sets", kPublic, L"\\Quillet Author\\Templates"},
        {FormDocumentDirectory, L"Locations", L"Form Document Files", kPersonal, L""},
        {AnswerDirectory, L"Locations", L"Answer Files", kPersonal, L"\\Quillet Author\\Answers"},
        {AnswerDirectoryAlias, L"Locations", L"Answer Files", kPersonal, L"\\Quillet Author\\Answers"},
        {TemplateDirectory, L"Locations", L"Template Files", kPersonal, L"\\Quillet Author\\Templates"},
        {PublishDirectory, L"Locations", L"Publish Settings Files", kPersonal, L"\\Quillet Author\\Publish"},
        {CatalogDirectory, L"Locations", L"Catalog Files", kPublic, L"\\Quillet Author\\Catalog Files"}};

TEST_F(Directories, HaveDefaultsBelowTheDocumentsFoldersAndTheProgram) {
    EXPECT_NE(CQlDir::GetDirectory(kPersonal), CQlDir::GetDirectory(kPublic));
    for (const auto& [kind, section, entry, base, tail] : kPreferences)
        EXPECT_EQ(Below(base, tail), CQlDir::GetDirectory(kind)) << entry;
}

TEST_F(Directories, ArePreferencesLessOneTrailingBackslash) {
    for (const auto& [kind, section, entry, base, tail] : kPreferences) {
        const std::wstring stored = L"D:\\Work " + std::wstring(entry);
        registry_.Put(kMachine, section, entry, stored + L'\\');
        EXPECT_EQ(RWWString(stored), CQlDir::GetDirectory(kind));
        const wchar_t *itsSection = nullptr, *itsEntry = nullptr;
        EXPECT_TRUE(CQlDir::GetPreference(kind, itsSection, itsEntry)) << entry;
        EXPECT_STREQ(section, itsSection);
        EXPECT_STREQ(entry, itsEntry);
    }
    const wchar_t* none = nullptr;
    EXPECT_FALSE(CQlDir::GetPreference(kPersonal, none, none));
}

TEST_F(Directories, OfTheProgramIsTheLibrarysFolderWithItsBackslash) {
    const RWWString program = CQlDir::GetDirectory(ProgramDirectory);
    EXPECT_EQ(program, CQlDir::GetDirectory(ProgramDirectoryCopy));
    EXPECT_EQ(L'\\', program.view().back());
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

TEST_F(Directories, HaveTheirEnumeratorsNamesAndEndAtFourteen) {
    EXPECT_STREQ(L"TemplateDirectory", CQlDir::GetName(TemplateDirectory));
    for (const int beyond : {-1, 15}) {
        const auto kind = static_cast<QuilletDirectories>(beyond);
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

TEST_F(Directories, HaveADisplayFormFoundIgnoringCaseAndByTheLeadingTextAlone) {
    std::wstring lower = Below(kPersonal, L"\\x").str();
    for (wchar_t& unit : lower) unit = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(unit)));
    enum Ways { Both, ToDisplay, ToPath };
    const std::tuple<Ways, RWWString, const wchar_t*> kCases[] = {
        {Both, Below(kPersonal, L"\\letters\\a.docx"), L"Documents\\letters\\a.docx"},
        {Both, Below(kPersonal, L"\\"), L"Documents\\"},
        {Both, Below(kPublic, L"\\Quillet Author"), L"Public Documents\\Quillet Author"},
        {Both, L"D:\\Documents\\letters", L"D:\\Documents\\letters"},
        {Both, L"", L""},
        {ToDisplay, RWWString(lower), L"Documents\\x"},
        {ToDisplay, Below(kPersonal, L""), L"Documents\\"},
        {ToDisplay, Below(kPersonal, L"Old\\x"), L"Documents\\Old\\x"},
        {ToPath, Below(kPersonal, L"\\"), L"DOCUMENTS"},
        {ToPath, Below(kPersonal, L"\\Old\\x"), L"DocumentsOld\\x"},
        {ToPath, Below(kPersonal, L"\\\\x"), L"Documents\\\\x"},
        {ToPath, Below(kPublic, L"\\x"), L"public DOCUMENTS\\x"},
        {ToPath, L"Document", L"Document"}};
    for (const auto& [ways, path, display] : kCases) {
        if (ways != ToPath) {
            EXPECT_EQ(display, CQlDir::ConvertPathToSpecialDisplayPath(path));
        }
        if (ways != ToDisplay) {
            EXPECT_EQ(path, CQlDir::ConvertSpecialDisplayPathToPath(display));
        }
    }
}

}  // namespace
