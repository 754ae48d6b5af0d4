#include "files/backup.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/win32.h"

namespace {

RWWString BackupName(const QLFileName& name, int level) {
    RWWString extension;
    if (name.GetExtension(extension)) extension = RWWString(extension.view().substr(1));
    QLFileName backup(name);
    backup.SetExtension((RWWString(L"~") + extension + std::to_wstring(level).c_str()).data());
    return backup.GetPathAndFileName();
}

bool Copy(const RWWString& from, const RWWString& to) {
    return ::CopyFileW(from.data(), to.data(), FALSE) != FALSE;
}

bool IsThere(const RWWString& file) {
    return ::GetFileAttributesW(file.data()) != INVALID_FILE_ATTRIBUTES;
}

bool Fails(std::wstring_view reason, wchar_t* message, int messageLength) {
    if (!message || messageLength <= 0) return false;
    const std::size_t count = reason.copy(message, static_cast<std::size_t>(messageLength) - 1);
    message[count] = L'\0';
    return false;
}

}  // namespace

bool BackupFile(const QLFileName& name, wchar_t* message, int messageLength) {
    const RWWString first = BackupName(name, 1);
    if (IsThere(first) && !Copy(first, BackupName(name, 2))) {
        return Fails(L"Unable to do second-level backup.", message, messageLength);
    }
    if (!Copy(name.GetPathAndFileName(), first)) {
        return Fails(L"Unable to do first-level backup.", message, messageLength);
    }
    return true;
}
