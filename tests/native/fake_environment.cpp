#include <unistd.h>
#include <windows.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "tests/native/fake_names.h"
#include "tests/native/fake_paths.h"

namespace {

using Variables = std::map<std::wstring, std::wstring, fake::NameLess>;

// Begins as the real one, and is the sources' own from there.
Variables RealEnvironment() {
    Variables variables;
    for (char** entry = environ; *entry; ++entry) {
        const std::wstring text = fake::FromUtf8(*entry);
        const std::size_t end = text.find(L'=');
        if (end != std::wstring::npos) variables.emplace(text.substr(0, end), text.substr(end + 1));
    }
    return variables;
}

struct Environment {
    std::mutex lock;
    Variables variables = RealEnvironment();
};

Environment& TheEnvironment() {
    static Environment environment;
    return environment;
}

std::optional<std::wstring> ValueOf(std::wstring_view name) {
    Environment& environment = TheEnvironment();
    const std::lock_guard guard(environment.lock);
    const auto found = environment.variables.find(name);
    if (found == environment.variables.end()) return std::nullopt;
    return found->second;
}

// Copies the text and its zero if they fit.
bool CopyWhole(const std::wstring& text, wchar_t* out, DWORD capacity) {
    if (text.size() >= capacity) return false;
    *std::copy(text.begin(), text.end(), out) = L'\0';
    return true;
}

// A reference to an unknown name stays, and its second percent sign may begin another one.
std::wstring Expanded(std::wstring_view text) {
    std::wstring result;
    while (!text.empty()) {
        const std::size_t end = text.front() == L'%' ? text.find(L'%', 1) : text.find(L'%');
        const auto value =
            text.front() == L'%' && end != text.npos ? ValueOf(text.substr(1, end - 1)) : std::nullopt;
        result.append(value ? std::wstring_view(*value) : text.substr(0, end));
        text.remove_prefix(std::min(end, text.size()));
        if (value) text.remove_prefix(1);
    }
    return result;
}

}  // namespace

DWORD GetEnvironmentVariableW(const wchar_t* name, wchar_t* value, DWORD capacity) {
    const auto found = ValueOf(name);
    if (!found) {
        SetLastError(ERROR_ENVVAR_NOT_FOUND);
        return 0;
    }
    return static_cast<DWORD>(CopyWhole(*found, value, capacity) ? found->size() : found->size() + 1);
}

BOOL SetEnvironmentVariableW(const wchar_t* name, const wchar_t* value) {
    Environment& environment = TheEnvironment();
    const std::lock_guard guard(environment.lock);
    if (value) {
        environment.variables[name] = value;
        return TRUE;
    }
    if (environment.variables.erase(name) > 0) return TRUE;
    SetLastError(ERROR_ENVVAR_NOT_FOUND);
    return FALSE;
}

DWORD ExpandEnvironmentStringsW(const wchar_t* text, wchar_t* out, DWORD capacity) {
    const std::wstring expanded = Expanded(text);
    CopyWhole(expanded, out, capacity);
    return static_cast<DWORD>(expanded.size() + 1);
}
