#include "prefs/directories.h"
#include "tools/qlutil/command.h"

namespace {

struct DirectoryRow {
    QuilletDirectories directory;
    const wchar_t* name;
};

// A name for each number, as it is written in code.
#define QL_DIRECTORY_ROW(member) {member, L## #member}
constexpr DirectoryRow kDirectories[] = {
    QL_DIRECTORY_ROW(ProgramDirectory),         QL_DIRECTORY_ROW(JavaScriptDirectory),
    QL_DIRECTORY_ROW(ProgramDirectoryCopy),     QL_DIRECTORY_ROW(PersonalDictionaryFile),
    QL_DIRECTORY_ROW(LibraryDirectory),         QL_DIRECTORY_ROW(TemplateSetDirectory),
    QL_DIRECTORY_ROW(FormDocumentDirectory),    QL_DIRECTORY_ROW(AnswerDirectory),
    QL_DIRECTORY_ROW(AnswerDirectoryAlias),     QL_DIRECTORY_ROW(TemplateDirectory),
    QL_DIRECTORY_ROW(PublishDirectory),         QL_DIRECTORY_ROW(PersonalDocumentsDirectory),
    QL_DIRECTORY_ROW(PublicDocumentsDirectory), QL_DIRECTORY_ROW(CatalogDirectory),
    QL_DIRECTORY_ROW(ProgramFilesPreference),
};
#undef QL_DIRECTORY_ROW

Record Describe(const DirectoryRow& row) {
    return {
        {L"number", static_cast<int>(row.directory)},
        {L"name", row.name},
        {L"path", CQlDir::GetDirectory(row.directory)},
    };
}

Answer Directories(const Arguments& arguments) {
    List rows;
    if (arguments.count() == 0) {
        for (const DirectoryRow& row : kDirectories) rows.push_back(Describe(row));
        return rows;
    }
    const int wanted = RequireInt(arguments[0], L"NUMBER");
    for (const DirectoryRow& row : kDirectories) {
        if (static_cast<int>(row.directory) == wanted) rows.push_back(Describe(row));
    }
    if (!rows.empty()) return rows;
    return Answer::Failure(L"there is no directory " + std::to_wstring(wanted) + L"; the numbers are 0 to 14");
}

Answer Display(const Arguments& arguments) {
    return Record{{L"result", CQlDir::ConvertPathToSpecialDisplayPath(RWWString(arguments[0]))}};
}

Answer Undisplay(const Arguments& arguments) {
    return Record{{L"result", CQlDir::ConvertSpecialDisplayPathToPath(RWWString(arguments[0]))}};
}

constexpr Command kCommands[] = {
    {L"dirs", L"[NUMBER]", L"Where each kind of file lives: preference or default.", {}, 0, 1, Directories},
    {L"display", L"PATH", L"A path under the documents folders in its short display form.", {}, 1, 1, Display},
    {L"undisplay", L"PATH", L"The path that a display form stands for.", {}, 1, 1, Undisplay},
};

}  // namespace

std::span<const Command> DirectoryCommands() {
    return kCommands;
}
