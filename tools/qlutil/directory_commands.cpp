#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "prefs/directories.h"
#include "settings/preference_layers.h"
#include "text/letter_case.h"
#include "tools/qlutil/command.h"

namespace {

// The layer that gives a preference's text; the store of this program only repeats what the registry said.
const wchar_t* SourceOf(const wchar_t* section, const wchar_t* entry) {
    const PreferenceOrigin origin = FindPreference(section, entry);
    for (const auto& [layer, name] :
         {std::pair(PreferenceLayer::User, L"user"), std::pair(PreferenceLayer::Machine, L"machine")}) {
        if (origin[layer].type != PreferenceType::Text) continue;
        return origin[layer].value.isNull() ? L"default" : name;
    }
    return L"default";
}

bool Exists(const RWWString& path) {
    std::error_code ignored;
    return std::filesystem::exists(path.str(), ignored);
}

Record Describe(QuilletDirectories directory) {
    const wchar_t* section = nullptr;
    const wchar_t* entry = nullptr;
    const bool hasPreference = CQlDir::GetPreference(directory, section, entry);
    const RWWString path = CQlDir::GetDirectory(directory);
    return {
        {L"number", static_cast<int>(directory)},
        {L"name", CQlDir::GetName(directory)},
        {L"path", path},
        {L"source", hasPreference ? SourceOf(section, entry) : L"default"},
        {L"preference", hasPreference ? Node(RWWString(section) + L"\\" + entry) : Node(nullptr)},
        {L"exists", Exists(path)},
    };
}

bool IsDirectory(int number) {
    return CQlDir::GetName(static_cast<QuilletDirectories>(number)) != nullptr;
}

// By number or by name, in any case.
std::optional<QuilletDirectories> Named(std::wstring_view word) {
    const RWWString wanted = ChangeCase(RWWString(word), CASE_UPPER);
    for (int i = 0; IsDirectory(i); ++i) {
        const auto directory = static_cast<QuilletDirectories>(i);
        if (ToInt(word) == i || ChangeCase(CQlDir::GetName(directory), CASE_UPPER) == wanted)
            return directory;
    }
    return std::nullopt;
}

Answer Directories(const Arguments& arguments) {
    List rows;
    if (arguments.count() == 0) {
        for (int i = 0; IsDirectory(i); ++i) rows.push_back(Describe(static_cast<QuilletDirectories>(i)));
        return rows;
    }
    if (const auto directory = Named(arguments[0])) return List{Describe(*directory)};
    return Answer::Failure(L"there is no directory " + std::wstring(arguments[0]) +
                           L"; the numbers are 0 to 14, and \"qlutil dirs\" shows the names");
}

Answer Display(const Arguments& arguments) {
    return Record{{L"result", CQlDir::ConvertPathToSpecialDisplayPath(RWWString(arguments[0]))}};
}

Answer Undisplay(const Arguments& arguments) {
    return Record{{L"result", CQlDir::ConvertSpecialDisplayPathToPath(RWWString(arguments[0]))}};
}

constexpr Command kCommands[] = {
    {L"dirs",
     L"[NUMBER|NAME]",
     L"Where each kind of file lives, which layer and preference says so, and whether it is there.",
     {},
     0,
     1,
     Directories},
    {L"display",
     L"PATH",
     L"A path under the documents folders in its short display form.",
     {},
     1,
     1,
     Display},
    {L"undisplay", L"PATH", L"The path that a display form stands for.", {}, 1, 1, Undisplay},
};

}  // namespace

std::span<const Command> DirectoryCommands() {
    return kCommands;
}
