#include "files/full_path.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "names/file_type.h"
#include "names/name_access.h"
#include "platform/failure.h"
#include "platform/win32.h"
#include "prefs/known_directory.h"
#include "settings/preference_keys.h"
#include "settings/preference_texts.h"
#include "settings/registry_values.h"
#include "textproc/template_directory.h"

namespace {

RWWString FormerLocation(HKEY root, const RWWString& name) {
    constexpr std::size_t kMostUnits = 256;
    RWWString path = ql::ReadForeignText(root, L"SOFTWARE\\Brellwick\\Quillet 6\\Locations", name.data(),
                                         kMostUnits + 1);  // with the zero that may end it
    return path.length() <= kMostUnits ? path : RWWString();
}

RWWString NamedLocation(const RWWString& name) {
    for (const bool machine : {false, true}) {
        RWWString path = ql::RegistryDirectory(QLIS_DIRECTORIES, name.data(), machine);
        if (!path.isNull()) return path;
    }
    const RWWString machines = FormerLocation(HKEY_LOCAL_MACHINE, name);
    return machines.isNull() ? FormerLocation(HKEY_CURRENT_USER, name) : machines;
}

RWWString DirectoryOfKind(FileType kind) {
    switch (kind) {
        case FT_CLAUSE_LIBRARY: return ql::TemplateDirectoryOf(ql::DefaultTextProcessor());
        case FT_BINARY_ANSWER_FILE:
        case FT_ANSWER_FILE:
        case FT_TEXT_ANSWER_FILE: return ql::KnownDirectory(AnswerDirectory);
        default: return ql::TemplateDirectoryOf(ql::ProcessorOf(kind));  // empty for what is no template
    }
}

RWWString DirectoryFor(const QLFileName& name, const wchar_t* defaultDir) {
    if (defaultDir && *defaultDir) return defaultDir;
    RWWString directory = DirectoryOfKind(GetFileType(name));
    return directory.isNull() ? ql::KnownDirectory(TemplateDirectory) : directory;
}

void PutIntoNamedLocation(QLCmdLine& name, std::wstring_view path) {
    const std::size_t end = std::min(path.find_first_of(L"\\/"), path.size());
    const RWWString location = NamedLocation(RWWString(path.substr(1, end - 1)));
    ql::NameAccess::SetPath(name, path.substr(end));
    ql::NameAccess::PrependPath(name, location);
}

void Complete(QLCmdLine& name, const wchar_t* defaultDir) {
    const std::wstring path = ql::NameAccess::Path(name);
    if (path.starts_with(L'^')) {
        PutIntoNamedLocation(name, path);
    } else {
        const bool rootedWithoutDrive = path.starts_with(L'\\');
        const RWWString directory =
            rootedWithoutDrive ? ql::KnownDirectory(TemplateDirectory) : DirectoryFor(name, defaultDir);
        ql::NameAccess::PrependPath(name, directory);
    }
}

QLCmdLine Completed(const QLCmdLine& line, const wchar_t* defaultDir, const wchar_t* defaultExt) {
    QLCmdLine full(line);
    if (full.QLFileName::IsNull() || full.IsRemote() || full.IsPluginFileType()) return full;
    if (!full.HasRoot()) Complete(full, defaultDir);
    if (defaultExt) ql::NameAccess::SetExtension(full, ql::TextOf(defaultExt));
    return full;
}

template <class Name>
QLCmdLine CompletedOrNull(const Name& name, const wchar_t* defaultDir, const wchar_t* defaultExt) noexcept {
    return ql::FailureIfThrown(QLCmdLine(),
                               [&] { return Completed(QLCmdLine(name), defaultDir, defaultExt); });
}

}  // namespace

QLCmdLine MakeFullPath(const QLCmdLine& cmdLine, const wchar_t* defaultDir, const wchar_t* defaultExt) {
    return CompletedOrNull(cmdLine, defaultDir, defaultExt);
}

QLCmdLine MakeFullPath(const QLFileName& name, const wchar_t* defaultDir, const wchar_t* defaultExt) {
    return CompletedOrNull(name, defaultDir, defaultExt);
}

QLCmdLine MakeFullPath(const RWWString& text, const wchar_t* defaultDir, const wchar_t* defaultExt) {
    return CompletedOrNull(text.data(), defaultDir, defaultExt);
}

RWWString GetCaretPath(const RWWString& locationName) {
    return ql::FailureIfThrown(RWWString(), [&] { return NamedLocation(locationName); });
}
