#include "textproc/form_proc_program.h"

#include <string>

#include "platform/unique_handle.h"
#include "platform/win32.h"
#include "settings/preference_keys.h"
#include "settings/preferences.h"
#include "text/blanks.h"
#include "text/characters.h"

namespace {

using Text = std::wstring_view;

constexpr std::size_t kNone = Text::npos;
constexpr Text kDocumentEndings[] = {L"%1", L"\"%1\"", L"/ddeex"};

Text WithoutDocument(Text text) {
    for (const Text ending : kDocumentEndings) {
        if (text.size() > ending.size() && text.ends_with(ending)) {
            text.remove_suffix(ending.size());
            break;
        }
    }
    return ql::WithoutTrailingBlanks(text);
}

std::wstring WithQuotedProgram(std::wstring text) {
    constexpr Text kProgramEnd = L".exe";
    if (text.starts_with(L'"')) return text;
    std::wstring lower = text;
    ql::MakeLower(lower);
    const std::size_t at = lower.find(kProgramEnd);
    if (at == kNone) return text;
    const std::size_t end = at + kProgramEnd.size();
    if (text.find(L' ') >= end) return text;
    return L'"' + text.substr(0, end) + L"\" " + text.substr(end);
}

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
    const QLCmdLine preferred(
        GetQLRegString(GetFormProcRegName(processor).data(), QLIE_EXEC_PATH, nullptr).data());
    if (preferred.Exists()) return preferred;
    const wchar_t* const documentClass = GetFormProcRegKey(processor);
    if (!documentClass) return {};
    const QLCmdLine registered = FormalizeFormProcCmdLine(OpenCommand(documentClass).data());
    return registered.Exists() ? registered : QLCmdLine();
}

QLCmdLine FormalizeFormProcCmdLine(const wchar_t* text) {
    const Text command = WithoutDocument(ql::WithoutBlanks(ql::TextOf(text)));
    return QLCmdLine(WithQuotedProgram(std::wstring(command)).c_str());
}
