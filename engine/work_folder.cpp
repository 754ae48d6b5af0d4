#include "engine/work_folder.h"

#include "engine/name_encoding.h"
#include "engine/windows_text.h"

namespace ql::zip {
namespace {

constexpr char kName[] = "~ql.tmp";

// Keeps it from being removed: by another call that ends, which does not know of this one.
UniqueFileHandle Hold(const std::wstring& path) {
    return UniqueFileHandle(
        ::CreateFileW(path.c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

// A link would lead out of the folder.
bool IsPlainFolder(HANDLE file) {
    FILE_ATTRIBUTE_TAG_INFO info;
    return ::GetFileInformationByHandleEx(file, FileAttributeTagInfo, &info, sizeof info) &&
           (info.FileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) ==
               FILE_ATTRIBUTE_DIRECTORY;
}

}  // namespace

WorkFolder::WorkFolder(const std::wstring& folder) : path_(folder + L'\\' + WideFromUtf8(kName)) {
    ::CreateDirectoryW(path_.c_str(), nullptr);
    hold_ = Hold(path_);
    if (!hold_ || !IsPlainFolder(hold_.get())) path_.clear();
}

bool WorkFolder::IsNamed(std::string_view file) {
    return IsSameFolded(file, kName);
}

WorkFolder::~WorkFolder() {
    hold_.reset();
    if (!path_.empty()) ::RemoveDirectoryW(path_.c_str());
}

}  // namespace ql::zip
