#include "files/backup.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "files/file_removal.h"
#include "files/kept_name.h"
#include "names/name_access.h"
#include "platform/failure.h"
#include "platform/win32.h"

namespace {

RWWString BackupName(const QLFileName& name, int level) {
    using Names = ql::NameAccess;
    QLFileName backup(name);
    ql::RequireWhole(backup, name);
    Names::SetExtension(backup, L'~' + std::wstring(Names::Extension(name)) + std::to_wstring(level));
    return Names::PathAndFileName(backup);
}

// What tells one state of a file from another; nothing when there is no file.
struct State {
    bool isThere = false;
    DWORD size[2] = {}, written[2] = {};
    bool operator==(const State&) const = default;
};

State StateOf(const RWWString& file) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!::GetFileAttributesExW(file.data(), GetFileExInfoStandard, &data)) return {};
    return {true,
            {data.nFileSizeHigh, data.nFileSizeLow},
            {data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime}};
}

// The system does not copy over a hidden file, which the backup of a hidden one is.
void Show(const RWWString& file) {
    const DWORD attributes = ::GetFileAttributesW(file.data());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_HIDDEN) != 0)
        ::SetFileAttributesW(file.data(), attributes & ~DWORD{FILE_ATTRIBUTE_HIDDEN});
}

// A copy that fails half way is no backup: it goes, lest the next backup takes it for one.
bool Copy(const RWWString& from, const RWWString& to) {
    Show(to);
    const State before = StateOf(to);
    if (::CopyFileW(from.data(), to.data(), FALSE)) return true;
    const DWORD error = ::GetLastError();
    if (StateOf(to) != before) ql::RemoveFile(to.data());
    ::SetLastError(error);
    return false;
}

bool Fails(std::wstring_view reason, wchar_t* message, int messageLength) {
    if (!message || messageLength <= 0) return false;
    const std::size_t count = reason.copy(message, static_cast<std::size_t>(messageLength) - 1);
    message[count] = L'\0';
    return false;
}

}  // namespace

bool BackupFile(const QLFileName& name, wchar_t* message, int messageLength) {
    return ql::FailureIfThrown(false, [&] {
        const RWWString first = BackupName(name, 1);
        if (StateOf(first).isThere && !Copy(first, BackupName(name, 2))) {
            return Fails(L"Unable to do second-level backup.", message, messageLength);
        }
        if (!Copy(name.GetPathAndFileName(), first)) {
            return Fails(L"Unable to do first-level backup.", message, messageLength);
        }
        return true;
    });
}
