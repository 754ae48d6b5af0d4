#include "settings/registry.h"

#include <algorithm>
#include <cwchar>
#include <string>
#include <string_view>
#include <vector>

#include "platform/unique_handle.h"
#include "platform/win32.h"
#include "settings/registry_writers.h"
#include "settings/trailing_backslash.h"
#include "text/fields.h"

const wchar_t g_trueStr[] = L"True";
const wchar_t g_falseStr[] = L"False";

namespace {

// NOLINTBEGIN(performance-no-int-to-ptr): the system's own constants
const HKEY kUser = HKEY_CURRENT_USER;
const HKEY kMachine = HKEY_LOCAL_MACHINE;
// NOLINTEND(performance-no-int-to-ptr)

constexpr wchar_t kBase[] = L"SOFTWARE\\Quillet\\Author\\";
constexpr wchar_t kOldBase[] = L"SOFTWARE\\Brellwick\\Quillet 6\\";
constexpr std::size_t kTextUnits = 512;         // with the zero at the end
constexpr std::size_t kValueNameUnits = 16384;  // the registry's own limits, with the zero
constexpr std::size_t kSubkeyNameUnits = 256;

std::wstring KeyPath(const wchar_t* base, const wchar_t* section) {
    std::wstring path = base;
    if (section) path += section;
    return path;
}

HKEY RootKey(bool machine) {
    return machine ? kMachine : kUser;
}

ql::UniqueRegKey OpenKey(HKEY root, const wchar_t* path, REGSAM access) {
    ql::UniqueRegKey key;
    if (::RegOpenKeyExW(root, path, 0, access, key.put()) != ERROR_SUCCESS) return {};
    return key;
}

bool IsTextType(DWORD type) {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

// The stored bytes up to their first zero; an odd byte at the end is none of the text.
std::wstring_view StoredText(const wchar_t* units, std::size_t bytes) {
    const std::size_t count = std::min(bytes / sizeof(wchar_t), kTextUnits - 1);
    return {units, static_cast<std::size_t>(std::find(units, units + count, L'\0') - units)};
}

bool ReadText(HKEY root, const std::wstring& path, const wchar_t* entry, RWWString* value) {
    const ql::UniqueRegKey key = OpenKey(root, path.c_str(), KEY_QUERY_VALUE);
    if (!key) return false;
    wchar_t units[kTextUnits];
    DWORD bytes = sizeof units;
    DWORD type = REG_NONE;
    auto* buffer = reinterpret_cast<BYTE*>(units);
    if (::RegQueryValueExW(key.get(), entry, nullptr, &type, buffer, &bytes) != ERROR_SUCCESS) return false;
    if (!IsTextType(type)) return false;
    value->assign(StoredText(units, bytes));
    return true;
}

bool ReadInteger(HKEY root, const std::wstring& path, const wchar_t* entry, unsigned int* value) {
    const ql::UniqueRegKey key = OpenKey(root, path.c_str(), KEY_QUERY_VALUE);
    if (!key) return false;
    BYTE content[4] = {};
    DWORD bytes = sizeof content;
    if (::RegQueryValueExW(key.get(), entry, nullptr, nullptr, content, &bytes) != ERROR_SUCCESS)
        return false;
    *value = content[0] | content[1] << 8 | content[2] << 16 | static_cast<unsigned>(content[3]) << 24;
    return true;
}

bool ReadTextUserFirst(const std::wstring& path, const wchar_t* entry, RWWString* value) {
    return ReadText(kUser, path, entry, value) || ReadText(kMachine, path, entry, value);
}

// The class that a new key is given is the name of the first value's type: kept from earlier versions.
ql::UniqueRegKey CreateKey(const wchar_t* section, const wchar_t* keyClass) {
    const std::wstring path = KeyPath(kBase, section);
    auto* classText = const_cast<wchar_t*>(keyClass);  // only read, whatever the declaration says
    ql::UniqueRegKey key;
    if (::RegCreateKeyExW(kUser, path.c_str(), 0, classText, 0, KEY_ALL_ACCESS, nullptr, key.put(),
                          nullptr) != ERROR_SUCCESS) {
        return {};
    }
    return key;
}

unsigned long ColorByte(const wchar_t* number) {
    return static_cast<unsigned long>(std::wcstol(number, nullptr, 10)) & 0xff;
}

}  // namespace

bool GetRegStringVal(const wchar_t* section, const wchar_t* entry, RWWString* value) {
    return ReadTextUserFirst(KeyPath(kBase, section), entry, value);
}

bool GetRegIntVal(const wchar_t* section, const wchar_t* entry, unsigned int* value) {
    const std::wstring path = KeyPath(kBase, section);
    return ReadInteger(kUser, path, entry, value) || ReadInteger(kMachine, path, entry, value);
}

bool GetRegBoolVal(const wchar_t* section, const wchar_t* entry, bool* value) {
    RWWString text;
    if (!GetRegStringVal(section, entry, &text)) return false;
    *value = StrToBool(text.data(), false);
    return true;
}

bool ReadRegString(const wchar_t* section, const wchar_t* entry, bool machine, RWWString& value) {
    return ReadText(RootKey(machine), KeyPath(kBase, section), entry, &value);
}

bool ReadRegInt(const wchar_t* section, const wchar_t* entry, bool machine, int& value) {
    unsigned int content = 0;
    if (!ReadInteger(RootKey(machine), KeyPath(kBase, section), entry, &content)) return false;
    value = static_cast<int>(content);
    return true;
}

unsigned long QLRegStringToColor(const RWWString& text, unsigned long defaultColor) {
    const std::wstring_view view = text;
    const std::size_t first = view.find(L',');
    if (first == std::wstring_view::npos || first == 0) return defaultColor;
    const std::size_t second = view.find(L',', first + 1);
    if (second == std::wstring_view::npos) return defaultColor;
    const wchar_t* units = text.data();
    return ColorByte(units) | ColorByte(units + first + 1) << 8 | ColorByte(units + second + 1) << 16;
}

RWWString GetQLRegStringEx(const wchar_t* section, const wchar_t* entry, bool machine) {
    RWWString text;
    ReadRegString(section, entry, machine, text);
    return text;
}

RWWString GetQLProfileDirEx(const wchar_t* section, const wchar_t* entry, bool machine) {
    return ql::WithoutTrailingBackslash(GetQLRegStringEx(section, entry, machine));
}

// NOLINTNEXTLINE(bugprone-reserved-identifier)
RWWString _GetOldQLProfileString(const wchar_t* section, const wchar_t* entry) {
    RWWString text;
    ReadTextUserFirst(KeyPath(kOldBase, section), entry, &text);
    return text;
}

RWWString GetOldQLRegString(const wchar_t* section, const wchar_t* entry, const wchar_t* defaultText) {
    RWWString text = _GetOldQLProfileString(section, entry);
    if (text.isNull()) text = defaultText;
    return text;
}

EnumQLEntries::EnumQLEntries(const wchar_t* section) {
    const std::wstring path = KeyPath(kBase, section);
    Collect(kUser, path);
    Collect(kMachine, path);
}

EnumQLEntries::EnumQLEntries(const wchar_t* section, bool machine, bool underBase) {
    Collect(RootKey(machine), KeyPath(underBase ? kBase : L"", section));
}

void EnumQLEntries::Collect(HKEY root, const RWWString& path) {
    const ql::UniqueRegKey key = OpenKey(root, path.data(), KEY_QUERY_VALUE);
    if (!key) return;
    const bool mayRepeat = NumEntries() > 0;
    std::vector<wchar_t> units(kValueNameUnits);
    for (DWORD index = 0;; ++index) {
        DWORD length = kValueNameUnits;
        const LONG result =
            ::RegEnumValueW(key.get(), index, units.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (result == ERROR_MORE_DATA) continue;  // a name beyond the registry's own limit
        if (result != ERROR_SUCCESS) return;
        const RWWString name(units.data(), length);
        if (!mayRepeat || Index(name, true) < 0) AppendString(name);
    }
}

bool EnumQLEntries::GetNextEntry(RWWString& name) {
    if (next_ >= NumEntries()) return false;
    name = (*this)(static_cast<int>(next_++));
    return true;
}

void EnumQLSections::Closer::operator()(HKEY key) const noexcept {
    ::RegCloseKey(key);
}

EnumQLSections::EnumQLSections(HKEY root, const wchar_t* subkey)
    : key_(OpenKey(root, subkey, KEY_READ).release()) {}

EnumQLSections::EnumQLSections(const wchar_t* section, bool machine)
    : EnumQLSections(RootKey(machine), KeyPath(kBase, section).c_str()) {}

RWWString EnumQLSections::GetNextSection() {
    wchar_t units[kSubkeyNameUnits];
    DWORD length = kSubkeyNameUnits;
    if (!key_ || ::RegEnumKeyExW(key_.get(), next_, units, &length, nullptr, nullptr, nullptr, nullptr) !=
                     ERROR_SUCCESS) {
        return {};
    }
    ++next_;
    return RWWString(units, length);
}

namespace ql {

void WriteRegistryText(const wchar_t* section, const wchar_t* entry, const wchar_t* text) {
    const UniqueRegKey key = CreateKey(section, L"REG_SZ");
    if (!key) return;
    if (!text) {
        ::RegDeleteValueW(key.get(), entry);
        return;
    }
    const auto bytes = static_cast<DWORD>((std::wcslen(text) + 1) * sizeof(wchar_t));
    ::RegSetValueExW(key.get(), entry, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), bytes);
}

void WriteRegistryInteger(const wchar_t* section, const wchar_t* entry, int value) {
    const UniqueRegKey key = CreateKey(section, L"REG_DWORD");
    if (!key) return;
    const auto content = static_cast<DWORD>(value);
    ::RegSetValueExW(key.get(), entry, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&content), sizeof content);
}

void WriteRegistryBoolean(const wchar_t* section, const wchar_t* entry, bool value) {
    WriteRegistryText(section, entry, value ? g_trueStr : g_falseStr);
}

}  // namespace ql
