#include "prefs/directories.h"
#include "tools/qlutil/command.h"

namespace {

Record Describe(QuilletDirectories directory) {
    return {
        {L"number", static_cast<int>(directory)},
        {L"name", CQlDir::GetName(directory)},
        {L"path", CQlDir::GetDirectory(directory)},
    };
}

bool IsDirectory(int number) {
    return CQlDir::GetName(static_cast<QuilletDirectories>(number)) != nullptr;
}

Answer Directories(const Arguments& arguments) {
    List rows;
    if (arguments.count() == 0) {
        for (int i = 0; IsDirectory(i); ++i) rows.push_back(Describe(static_cast<QuilletDirectories>(i)));
        return rows;
    }
    const int wanted = RequireInt(arguments[0], L"NUMBER");
    if (IsDirectory(wanted)) return List{Describe(static_cast<QuilletDirectories>(wanted))};
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
