#include <windows.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/native/fake_names.h"

namespace {

template <class T>
using ByName = std::map<std::wstring, T, fake::NameLess>;

struct Value {
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;
};

struct Key {
    std::wstring keyClass;
    ByName<Value> values;
    ByName<std::shared_ptr<Key>> subkeys;
    bool deleted = false;
};

}  // namespace

// An open key. One that is not closed is a leak, and one that is used after that a fault, which the
// sanitizers see.
struct HKEY__ {
    std::shared_ptr<Key> key;
    REGSAM access;
};

namespace {

std::recursive_mutex g_lock;
using Guard = std::lock_guard<std::recursive_mutex>;

HKEY__* Root(HKEY key) {
    static HKEY__ user{std::make_shared<Key>(), KEY_ALL_ACCESS};
    static HKEY__ machine{std::make_shared<Key>(), KEY_ALL_ACCESS};
    return key == HKEY_CURRENT_USER ? &user : key == HKEY_LOCAL_MACHINE ? &machine : nullptr;
}

// The key behind a handle, when the handle allows what is wanted of it.
LSTATUS Resolve(HKEY handle, REGSAM wanted, Key*& key) {
    const HKEY__* open = Root(handle) ? Root(handle) : handle;
    if (!open) return ERROR_INVALID_HANDLE;
    key = open->key.get();
    if (key->deleted) return ERROR_KEY_DELETED;
    return (open->access & wanted) == wanted ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

std::shared_ptr<Key> Shared(HKEY handle) {
    return Root(handle) ? Root(handle)->key : handle->key;
}

std::wstring_view Text(const wchar_t* text) {
    return text ? std::wstring_view(text) : std::wstring_view();
}

// Takes the first name off a path; repeated and trailing backslashes do not count.
std::wstring_view TakeName(std::wstring_view& path) {
    const std::wstring_view name = path.substr(0, path.find(L'\\'));
    path.remove_prefix(name.size());
    path.remove_prefix(std::min(path.find_first_not_of(L'\\'), path.size()));
    return name;
}

// The key at a path below another; null when there is none.
std::shared_ptr<Key> Find(std::shared_ptr<Key> key, std::wstring_view path) {
    while (key && !path.empty()) {
        const auto found = key->subkeys.find(TakeName(path));
        key = found == key->subkeys.end() ? nullptr : found->second;
    }
    return key;
}

struct Creation {
    std::shared_ptr<Key> key;
    bool isNew = false;
};

Creation FindOrCreate(std::shared_ptr<Key> key, std::wstring_view path) {
    bool isNew = false;
    while (!path.empty()) {
        const auto [entry, added] = key->subkeys.try_emplace(std::wstring(TakeName(path)));
        if (added) entry->second = std::make_shared<Key>();
        key = entry->second;
        isNew = added;
    }
    return {key, isNew};
}

void DeleteContent(Key& key) {
    for (auto& [name, subkey] : key.subkeys) {
        DeleteContent(*subkey);
        subkey->deleted = true;
    }
    key.subkeys.clear();
    key.values.clear();
}

LSTATUS Remove(HKEY handle, std::wstring_view path) {
    const std::size_t end = path.find_last_of(L'\\');
    const std::wstring_view parentPath = path.substr(0, end == path.npos ? 0 : end);
    const std::shared_ptr<Key> parent = Find(Shared(handle), parentPath);
    const std::shared_ptr<Key> key = Find(Shared(handle), path);
    key->deleted = true;
    parent->subkeys.erase(parent->subkeys.find(path.substr(end == path.npos ? 0 : end + 1)));
    return ERROR_SUCCESS;
}

// The length goes in with room for the zero and out without it.
LSTATUS CopyName(const std::wstring& text, wchar_t* name, DWORD* length) {
    if (text.size() >= *length) return ERROR_MORE_DATA;
    *std::copy(text.begin(), text.end(), name) = L'\0';
    *length = static_cast<DWORD>(text.size());
    return ERROR_SUCCESS;
}

LSTATUS CopyValue(const Value& value, DWORD* type, BYTE* bytes, DWORD* count) {
    if (type) *type = value.type;
    if (!count) return bytes ? ERROR_INVALID_PARAMETER : ERROR_SUCCESS;
    const DWORD capacity = std::exchange(*count, static_cast<DWORD>(value.bytes.size()));
    if (!bytes) return ERROR_SUCCESS;
    if (capacity < value.bytes.size()) return ERROR_MORE_DATA;
    std::copy(value.bytes.begin(), value.bytes.end(), bytes);
    return ERROR_SUCCESS;
}

template <class Map>
auto Nth(const Map& map, DWORD index) {
    return index < map.size() ? std::next(map.begin(), index) : map.end();
}

template <class Map>
DWORD LongestName(const Map& map) {
    std::size_t longest = 0;
    for (const auto& entry : map) longest = std::max(longest, entry.first.size());
    return static_cast<DWORD>(longest);
}

DWORD LongestValue(const ByName<Value>& values) {
    std::size_t longest = 0;
    for (const auto& [name, value] : values) longest = std::max(longest, value.bytes.size());
    return static_cast<DWORD>(longest);
}

void Answer(DWORD* out, std::size_t value) {
    if (out) *out = static_cast<DWORD>(value);
}

}  // namespace

LSTATUS RegOpenKeyExW(HKEY key, const wchar_t* path, DWORD, REGSAM access, HKEY* opened) {
    const Guard guard(g_lock);
    *opened = nullptr;
    Key* parent = nullptr;
    if (const LSTATUS failure = Resolve(key, 0, parent)) return failure;
    if (Text(path).starts_with(L'\\')) return ERROR_BAD_PATHNAME;
    const std::shared_ptr<Key> found = Find(Shared(key), Text(path));
    if (!found) return ERROR_FILE_NOT_FOUND;
    *opened = new HKEY__{found, access};
    return ERROR_SUCCESS;
}

LSTATUS RegCreateKeyExW(HKEY key, const wchar_t* path, DWORD, wchar_t* keyClass, DWORD, REGSAM access,
                        const SECURITY_ATTRIBUTES*, HKEY* opened, DWORD* disposition) {
    const Guard guard(g_lock);
    Key* parent = nullptr;
    if (const LSTATUS failure = Resolve(key, 0, parent)) return failure;
    if (Text(path).starts_with(L'\\')) return ERROR_BAD_PATHNAME;
    const Creation creation = FindOrCreate(Shared(key), Text(path));
    if (creation.isNew) creation.key->keyClass = Text(keyClass);
    Answer(disposition, creation.isNew ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY);
    *opened = new HKEY__{creation.key, access};
    return ERROR_SUCCESS;
}

LSTATUS RegCloseKey(HKEY key) {
    if (!key) return ERROR_INVALID_HANDLE;
    if (!Root(key)) delete key;
    return ERROR_SUCCESS;
}

LSTATUS RegDeleteKeyW(HKEY key, const wchar_t* path) {
    const Guard guard(g_lock);
    Key* parent = nullptr;
    if (const LSTATUS failure = Resolve(key, 0, parent)) return failure;
    const std::shared_ptr<Key> found = Find(Shared(key), Text(path));
    if (!found) return ERROR_FILE_NOT_FOUND;
    if (!found->subkeys.empty() || Text(path).empty()) return ERROR_ACCESS_DENIED;
    return Remove(key, Text(path));
}

LSTATUS RegDeleteTreeW(HKEY key, const wchar_t* path) {
    const Guard guard(g_lock);
    Key* parent = nullptr;
    if (const LSTATUS failure = Resolve(key, 0, parent)) return failure;
    const std::shared_ptr<Key> found = Find(Shared(key), Text(path));
    if (!found) return ERROR_FILE_NOT_FOUND;
    DeleteContent(*found);
    return Text(path).empty() ? ERROR_SUCCESS : Remove(key, Text(path));
}

LSTATUS RegQueryValueExW(HKEY key, const wchar_t* name, DWORD*, DWORD* type, BYTE* bytes, DWORD* count) {
    const Guard guard(g_lock);
    Key* content = nullptr;
    if (const LSTATUS failure = Resolve(key, KEY_QUERY_VALUE, content)) return failure;
    const auto value = content->values.find(Text(name));
    return value == content->values.end() ? ERROR_FILE_NOT_FOUND
                                          : CopyValue(value->second, type, bytes, count);
}

LSTATUS RegSetValueExW(HKEY key, const wchar_t* name, DWORD, DWORD type, const BYTE* bytes, DWORD count) {
    const Guard guard(g_lock);
    Key* content = nullptr;
    if (const LSTATUS failure = Resolve(key, KEY_SET_VALUE, content)) return failure;
    content->values[std::wstring(Text(name))] = {type, std::vector<BYTE>(bytes, bytes + count)};
    return ERROR_SUCCESS;
}

LSTATUS RegDeleteValueW(HKEY key, const wchar_t* name) {
    const Guard guard(g_lock);
    Key* content = nullptr;
    if (const LSTATUS failure = Resolve(key, KEY_SET_VALUE, content)) return failure;
    return content->values.erase(std::wstring(Text(name))) > 0 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

LSTATUS RegEnumKeyExW(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD*, wchar_t* keyClass,
                      DWORD* classLength, FILETIME*) {
    const Guard guard(g_lock);
    Key* content = nullptr;
    if (const LSTATUS failure = Resolve(key, KEY_ENUMERATE_SUB_KEYS, content)) return failure;
    const auto subkey = Nth(content->subkeys, index);
    if (subkey == content->subkeys.end()) return ERROR_NO_MORE_ITEMS;
    if (keyClass) {
        if (const LSTATUS failure = CopyName(subkey->second->keyClass, keyClass, classLength)) return failure;
    }
    return CopyName(subkey->first, name, length);
}

LSTATUS RegEnumValueW(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD*, DWORD* type, BYTE* bytes,
                      DWORD* count) {
    const Guard guard(g_lock);
    Key* content = nullptr;
    if (const LSTATUS failure = Resolve(key, KEY_QUERY_VALUE, content)) return failure;
    const auto value = Nth(content->values, index);
    if (value == content->values.end()) return ERROR_NO_MORE_ITEMS;
    if (const LSTATUS failure = CopyName(value->first, name, length)) return failure;
    return CopyValue(value->second, type, bytes, count);
}

LSTATUS RegQueryInfoKeyW(HKEY key, wchar_t* keyClass, DWORD* classLength, DWORD*, DWORD* subkeys,
                         DWORD* longestSubkey, DWORD* longestClass, DWORD* values, DWORD* longestName,
                         DWORD* longestValue, DWORD* descriptor, FILETIME*) {
    const Guard guard(g_lock);
    Key* content = nullptr;
    if (const LSTATUS failure = Resolve(key, KEY_QUERY_VALUE, content)) return failure;
    Answer(subkeys, content->subkeys.size());
    Answer(longestSubkey, LongestName(content->subkeys));
    Answer(longestClass, 0);
    Answer(values, content->values.size());
    Answer(longestName, LongestName(content->values));
    Answer(longestValue, LongestValue(content->values));
    Answer(descriptor, 0);
    return keyClass ? CopyName(content->keyClass, keyClass, classLength) : ERROR_SUCCESS;
}
