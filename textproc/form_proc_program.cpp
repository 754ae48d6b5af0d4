#include "textproc/form_proc_program.h"

#include <string>

#include "platform/unique_handle.h"
#include "platform/win32.h"
#include "settings/preference_keys.h"
#include "settings/preferences.h"

namespace {

// Empty when there is none, or when it is longer than a path can be.
RWWString OpenCommand(const wchar_t* documentClass) {
    const std::wstring path = std::wstring(documentClass) + L"\\shell\\open\\command";
    wchar_t command[260 + 1] = {};  // a stored text need not end in a zero
    DWORD size = sizeof command - sizeof(wchar_t), type = REG_NONE;
    ql::UniqueRegKey key;
    if (::RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS ||
        ::RegQueryValueExW(key.get(), nullptr, nullptr, &type, reinterpret_cast<BYTE*>(command), &size) !=
            ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ)) {
        return {};
    }
    return command;
}

}  // namespace

QLCmdLine GetFormProcPath(FormProc processor) {
    const wchar_t* const documentClass = GetFormProcRegKey(processor);
    if (!documentClass) return {};
    const QLCmdLine preferred(
        GetQLRegString(GetFormProcRegName(processor).data(), QLIE_EXEC_PATH, nullptr).data());
    if (preferred.Exists()) return preferred;
    const QLCmdLine registered = FormalizeFormProcCmdLine(OpenCommand(documentClass).data());
    return registered.Exists() ? registered : QLCmdLine();
}
