#include <windows.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <mutex>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/native/fake_names.h"
#include "tests/native/system_memory.h"

// An open key. One that is not closed is a leak, and one that is used after that a fault, which the
// sanitizers see.
struct HKEY__ {
    std::wstring path;
};

namespace {

struct Value {
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;
};
using Values = std::map<std::wstring, Value, fake::NameLess>;

// Every key by its whole path. Paths end in a backslash, so that a key's own is the prefix of those below it.
HKEY__ g_roots[] = {{L"User\\"}, {L"Machine\\"}};
std::map<std::wstring, Values, fake::NameLess> g_keys = {{g_roots[0].path, {}}, {g_roots[1].path, {}}};
std::mutex g_lock;

// The registry's memory is the system's own.
struct Guard {
    fake::SystemMemory own{};
    std::lock_guard<std::mutex> lock{g_lock};
};

// Follows names from a key, in the case that each was created with; empty when one is missing and may not be
// created. Repeated and trailing backslashes do not count.
std::wstring Follow(std::wstring path, const wchar_t* names, bool mayCreate) {
    std::wistringstream rest(names);
    for (std::wstring name; std::getline(rest, name, L'\\');) {
        if (name.empty()) continue;
        path += name + L'\\';
        if (mayCreate) g_keys.try_emplace(path);
        const auto found = g_keys.find(path);
        if (found == g_keys.end()) return {};
        path = found->first;
    }
    return path;
}

LSTATUS Open(HKEY parent, const wchar_t* names, bool mayCreate, HKEY* opened) {
    const Guard guard;
    std::wstring path = Follow(parent->path, names, mayCreate);
    if (path.empty()) return ERROR_FILE_NOT_FOUND;
    *opened = new HKEY__{std::move(path)};
    return ERROR_SUCCESS;
}

std::wstring NameOf(const wchar_t* name) {
    return name ? name : L"";
}

// The length goes in with room for the zero and out without it.
LSTATUS CopyName(std::wstring_view text, wchar_t* name, DWORD* length) {
    if (text.size() >= *length) return ERROR_MORE_DATA;
    *std::copy(text.begin(), text.end(), name) = L'\0';
    *length = static_cast<DWORD>(text.size());
    return ERROR_SUCCESS;
}

}  // namespace

const HKEY HKEY_CURRENT_USER = &g_roots[0], HKEY_LOCAL_MACHINE = &g_roots[1];

LSTATUS RegOpenKeyExW(HKEY parent, const wchar_t* path, DWORD, REGSAM, HKEY* opened) {
    return Open(parent, path, false, opened);
}

LSTATUS RegCreateKeyExW(HKEY parent, const wchar_t* path, DWORD, wchar_t*, DWORD, REGSAM,
                        const SECURITY_ATTRIBUTES*, HKEY* opened, DWORD*) {
    return Open(parent, path, true, opened);
}

LSTATUS RegCloseKey(HKEY key) {
    delete key;
    return ERROR_SUCCESS;
}

LSTATUS RegDeleteTreeW(HKEY parent, const wchar_t* path) {
    const Guard guard;
    const std::wstring top = Follow(parent->path, path, false);
    if (top.empty()) return ERROR_FILE_NOT_FOUND;
    std::erase_if(g_keys, [&](const auto& key) { return key.first.starts_with(top); });
    return ERROR_SUCCESS;
}

LSTATUS RegQueryValueExW(HKEY key, const wchar_t* name, DWORD*, DWORD* type, BYTE* bytes, DWORD* count) {
    const Guard guard;
    const auto entry = g_keys.find(key->path);
    if (entry == g_keys.end()) return ERROR_KEY_DELETED;
    const auto found = entry->second.find(NameOf(name));
    if (found == entry->second.end()) return ERROR_FILE_NOT_FOUND;
    const Value& value = found->second;
    if (type) *type = value.type;
    const DWORD capacity = std::exchange(*count, static_cast<DWORD>(value.bytes.size()));
    if (capacity < value.bytes.size()) return ERROR_MORE_DATA;
    std::copy(value.bytes.begin(), value.bytes.end(), bytes);
    return ERROR_SUCCESS;
}

LSTATUS RegSetValueExW(HKEY key, const wchar_t* name, DWORD, DWORD type, const BYTE* bytes, DWORD count) {
    const Guard guard;
    g_keys.at(key->path)[NameOf(name)] = {type, std::vector<BYTE>(bytes, bytes + count)};
    return ERROR_SUCCESS;
}

LSTATUS RegDeleteValueW(HKEY key, const wchar_t* name) {
    const Guard guard;
    return g_keys.at(key->path).erase(NameOf(name)) > 0 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

LSTATUS RegEnumKeyExW(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD*, wchar_t*, DWORD*,
                      FILETIME*) {
    const Guard guard;
    auto entry = g_keys.find(key->path);
    if (entry == g_keys.end()) return ERROR_KEY_DELETED;
    for (++entry; entry != g_keys.end() && entry->first.starts_with(key->path); ++entry) {
        const std::wstring below = entry->first.substr(key->path.size());
        const std::size_t end = below.find(L'\\');
        if (end + 1 == below.size() && index-- == 0) return CopyName(below.substr(0, end), name, length);
    }
    return ERROR_NO_MORE_ITEMS;
}

LSTATUS RegEnumValueW(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD*, DWORD*, BYTE*, DWORD*) {
    const Guard guard;
    const Values& values = g_keys.at(key->path);
    return index < values.size() ? CopyName(std::next(values.begin(), index)->first, name, length)
                                 : ERROR_NO_MORE_ITEMS;
}
