#include "prefs/shell_folders.h"

#include "platform/win32.h"

namespace ql {

namespace {

std::wstring ShellFolder(int folder) {
    wchar_t path[MAX_PATH] = {};
    const int folderAndCreate = folder | CSIDL_FLAG_CREATE;
    if (FAILED(::SHGetFolderPathW(nullptr, folderAndCreate, nullptr, SHGFP_TYPE_CURRENT, path))) return {};
    return path;
}

}  // namespace

std::wstring PersonalDocumentsFolder() {
    return ShellFolder(CSIDL_PERSONAL);
}

std::wstring PublicDocumentsFolder() {
    return ShellFolder(CSIDL_COMMON_DOCUMENTS);
}

}  // namespace ql
