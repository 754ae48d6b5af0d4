#include "prefs/directories.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <utility>

#include "platform/failure.h"
#include "platform/module.h"
#include "platform/windows_version.h"
#include "prefs/known_directory.h"
#include "prefs/shell_folders.h"
#include "settings/preference_keys.h"
#include "settings/preference_texts.h"
#include "settings/preferences.h"
#include "text/characters.h"
#include "text/paths.h"

namespace {

struct Row;
using Source = RWWString (*)(const Row&);

constexpr auto kNoBase = static_cast<QuilletDirectories>(-1);

// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): in the order that rows are read in
struct Row {
    QuilletDirectories number;
    const wchar_t* name;
    Source source;
    const wchar_t* section = nullptr;  // of the preference; null when there is none
    const wchar_t* entry = nullptr;
    QuilletDirectories base = kNoBase;  // the default is this directory …
    const wchar_t* tail = L"";          // … and this below it; as it stands when empty
};

RWWString ModuleDirectory(const Row&);
RWWString PersonalDocuments(const Row&);
RWWString PublicDocuments(const Row&);
RWWString PreferenceOrDefault(const Row&);
RWWString PreferenceOnce(const Row&);

#define QL_KIND(kind) kind, L"" #kind
constexpr Row kRows[] = {
    {QL_KIND(ProgramDirectory), ModuleDirectory},
    {QL_KIND(JavaScriptDirectory), PreferenceOrDefault, QLIS_DIRECTORIES, QLIE_SCRIPT_DIR, ProgramDirectory,
     L"\\ServerFiles"},
    {QL_KIND(ProgramDirectoryCopy), ModuleDirectory},
    {QL_KIND(PersonalDictionaryFile), PreferenceOrDefault, QLIS_SPELL_CHECKING, QLIE_DICTIONARY_PATH,
     PersonalDocumentsDirectory, L"\\Quillet Author\\Spelling\\Personal Dictionary.tlx"},
    {QL_KIND(LibraryDirectory), PreferenceOrDefault, QLIS_DIRECTORIES, QLIE_LIBRARY_DIR,
     PersonalDocumentsDirectory, L"\\Quillet Author"},
    {QL_KIND(TemplateSetDirectory), PreferenceOrDefault, QLIS_DIRECTORIES, QLIE_TEMPLATE_SET_DIR,
     PublicDocumentsDirectory, L"\\Quillet Author\\Templates"},
    {QL_KIND(FormDocumentDirectory), PreferenceOrDefault, QLIS_DIRECTORIES, QLIE_FORM_DOCUMENT_DIR,
     PersonalDocumentsDirectory},
    {QL_KIND(AnswerDirectory), PreferenceOrDefault, QLIS_DIRECTORIES, QLIE_ANSWER_DIR,
     PersonalDocumentsDirectory, L"\\Quillet Author\\Answers"},
    {QL_KIND(AnswerDirectoryAlias), PreferenceOrDefault, nullptr, nullptr, AnswerDirectory},
    {QL_KIND(TemplateDirectory), PreferenceOrDefault, QLIS_DIRECTORIES, QLIE_TEMPLATE_FILES_DIR,
     PersonalDocumentsDirectory, L"\\Quillet Author\\Templates"},
    {QL_KIND(PublishDirectory), PreferenceOrDefault, QLIS_DIRECTORIES, QLIE_PUB_OPTIONS_DIR,
     PersonalDocumentsDirectory, L"\\Quillet Author\\Publish"},
    {QL_KIND(PersonalDocumentsDirectory), PersonalDocuments},
    {QL_KIND(PublicDocumentsDirectory), PublicDocuments},
    {QL_KIND(CatalogDirectory), PreferenceOrDefault, QLIS_DIRECTORIES, QLIE_CATALOG_FILES_DIR,
     PublicDocumentsDirectory, L"\\Quillet Author\\Catalog Files"},
    {QL_KIND(ProgramFilesPreference), PreferenceOnce, QLIS_DIRECTORIES, L"Program Files"},
};
#undef QL_KIND

constexpr std::size_t kKinds = std::size(kRows);
static_assert(std::equal(std::begin(kRows), std::end(kRows),
                         std::begin({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}),
                         [](const Row& row, int number) { return row.number == number; }),
              "rows are found by their number");

constexpr wchar_t kUnknownModuleDirectory[] = L"C:\\Program Files\\Quillet Author\\";

const Row* Find(QuilletDirectories kind) {
    const auto index = static_cast<std::size_t>(kind);
    return index < kKinds ? &kRows[index] : nullptr;
}

RWWString ModuleDirectory(const Row&) {
    static const RWWString directory = [] {
        std::wstring path = ql::OwnModulePath();
        path.resize(path.rfind(L'\\') + 1);  // nothing is left when there is none
        return path.empty() ? RWWString(kUnknownModuleDirectory) : RWWString(path);
    }();
    return directory;
}

RWWString PersonalDocuments(const Row&) {
    return ql::PersonalDocumentsFolder();
}

RWWString PublicDocuments(const Row&) {
    return ql::PublicDocumentsFolder();
}

RWWString WithTail(RWWString directory, const wchar_t* tail) {
    if (!*tail) return directory;
    const std::size_t last = directory.view().find_last_not_of(L'\\');
    directory.resize(last + 1);  // nothing is left when there is none
    return directory += tail;
}

RWWString PreferenceOrDefault(const Row& row) {
    RWWString directory;
    if (row.section) directory = ql::PreferenceDirectory(row.section, row.entry);
    return directory.isNull() ? WithTail(ql::KnownDirectory(row.base), row.tail) : directory;
}

RWWString PreferenceOnce(const Row& row) {
    static const RWWString directory = ql::PreferenceDirectory(row.section, row.entry);
    return directory;
}

RWWString* RecentDirectory(QuilletDirectories kind) {
    static std::array<RWWString, kKinds> recentDirectories;
    const auto index = static_cast<std::size_t>(kind);
    return index < kKinds ? &recentDirectories[index] : nullptr;
}

// A documents folder and what it is called in display paths.
struct DisplayFolder {
    QuilletDirectories kind;
    const wchar_t* name;
    const wchar_t* nameBeforeWindows6;

    std::wstring_view Name() const { return ql::IsWindows6OrLater() ? name : nameBeforeWindows6; }
};

constexpr DisplayFolder kDisplayFolders[] = {
    {PersonalDocumentsDirectory, L"Documents", L"My Documents"},
    {PublicDocumentsDirectory, L"Public Documents", L"Shared Documents"},
};

std::wstring_view WithoutLeadingBackslash(std::wstring_view text) {
    return text.substr(text.starts_with(L'\\') ? 1 : 0);
}

RWWString Join(const RWWString& folder, std::wstring_view rest) {
    return RWWString(ql::WithoutTrailingBackslash(folder)) + L'\\' + WithoutLeadingBackslash(rest);
}

}  // namespace

RWWString CQlDir::GetDirectory(QuilletDirectories kind) {
    return ql::FailureIfThrown(RWWString(), [kind] { return ql::KnownDirectory(kind); });
}

RWWString ql::KnownDirectory(QuilletDirectories kind) {
    const Row* row = Find(kind);
    return row ? row->source(*row) : RWWString();
}

const wchar_t* CQlDir::GetName(QuilletDirectories kind) noexcept {
    const Row* row = Find(kind);
    return row ? row->name : nullptr;
}

bool CQlDir::GetPreference(QuilletDirectories kind, const wchar_t*& section, const wchar_t*& entry) noexcept {
    const Row* row = Find(kind == AnswerDirectoryAlias ? AnswerDirectory : kind);
    if (!row || !row->section) return false;
    section = row->section;
    entry = row->entry;
    return true;
}

RWWString CQlDir::GetRecentDirectory(QuilletDirectories kind) {
    if (kind == LibraryDirectory) return GetLibraryDirectory();
    return ql::FailureIfThrown(RWWString(), [kind] {
        RWWString* recent = RecentDirectory(kind);
        if (!recent) return RWWString();
        if (recent->isNull()) *recent = GetDirectory(kind);
        return *recent;
    });
}

void CQlDir::SetRecentDirectory(QuilletDirectories kind, const RWWString& directory) {
    ql::Completes([&] {
        if (RWWString* recent = RecentDirectory(kind)) *recent = directory;
    });
    if (kind == LibraryDirectory) SetLibraryDirectory(directory);
}

RWWString CQlDir::GetLibraryDirectory() {
    RWWString directory = GetQLProfileDir(QLIS_RECENT, QLIE_LAST_LIBRARY_FOLDER);
    return directory.isNull() ? GetDirectory(LibraryDirectory) : std::move(directory);
}

void CQlDir::SetLibraryDirectory(const RWWString& directory) {
    WriteQLRegString(QLIS_RECENT, QLIE_LAST_LIBRARY_FOLDER, directory.data());
}

RWWString CQlDir::ConvertSpecialDisplayPathToPath(const RWWString& path) {
    return ql::FailureIfThrown(RWWString(), [&] {
        for (const DisplayFolder& folder : kDisplayFolders) {
            const std::wstring_view name = folder.Name();
            if (ql::StartsWithIgnoringCase(path, name))
                return Join(GetDirectory(folder.kind), path.view().substr(name.size()));
        }
        return path;
    });
}

RWWString CQlDir::ConvertPathToSpecialDisplayPath(const RWWString& path) {
    return ql::FailureIfThrown(RWWString(), [&] {
        for (const DisplayFolder& folder : kDisplayFolders) {
            const RWWString directory = GetDirectory(folder.kind);
            if (!directory.isNull() && ql::StartsWithIgnoringCase(path, directory))
                return Join(RWWString(folder.Name()), path.view().substr(directory.length()));
        }
        return path;
    });
}
