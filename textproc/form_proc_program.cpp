#include "textproc/form_proc_program.h"

#include <string>

#include "platform/failure.h"
#include "platform/win32.h"
#include "settings/preference_keys.h"
#include "settings/preferences.h"
#include "settings/registry_values.h"

namespace {

// Empty when there is none, or when it is longer than a path can be.
RWWString OpenCommand(const wchar_t* documentClass) {
    return ql::ReadForeignText(HKEY_CLASSES_ROOT, std::wstring(documentClass) + L"\\shell\\open\\command",
                               nullptr, MAX_PATH);
}

bool IsProgram(const QLCmdLine& line) {
    return line.Exists() && !line.IsDirectory();
}

}  // namespace

QLCmdLine GetFormProcPath(FormProc processor) {
    const wchar_t* const documentClass = GetFormProcRegKey(processor);
    if (!documentClass) return {};
    return ql::FailureIfThrown(QLCmdLine(), [&] {
        const RWWString section = GetFormProcRegName(processor);
        const QLCmdLine preferred(GetQLRegString(section.data(), QLIE_EXEC_PATH, nullptr).data());
        if (!section.isNull() && IsProgram(preferred)) return preferred;
        const QLCmdLine registered = FormalizeFormProcCmdLine(OpenCommand(documentClass).data());
        return IsProgram(registered) ? registered : QLCmdLine();
    });
}
