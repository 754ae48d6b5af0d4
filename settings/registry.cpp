#include "settings/registry.h"

#include <algorithm>
#include <cwchar>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/critical_section.h"
#include "platform/failure.h"
#include "platform/unique_handle.h"
#include "platform/win32.h"
#include "settings/preference_texts.h"
#include "settings/registry_values.h"
#include "text/characters.h"
#include "text/paths.h"

namespace {

// NOLINTBEGIN(performance-no-int-to-ptr): the system's own constants
const HKEY kUser = HKEY_CURRENT_USER;
const HKEY kMachine = HKEY_LOCAL_MACHINE;
// NOLINTEND(performance-no-int-to-ptr)

constexpr wchar_t kBase[] = L"SOFTWARE\\Quillet\\Author\\";
constexpr wchar_t kOldBase[] = L"SOFTWARE\\Brellwick\\Quillet 6\\";
constexpr std::size_t kTextUnits = 512;  // with the zero at the end
constexpr std::size_t kNumberBytes = 4;
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

// Programs of both word sizes see one machine value: that of the 32-bit view, where the product's installer
// writes. The user's keys have no second view.
REGSAM InView(HKEY root, REGSAM access) {
    return root == kMachine ? access | KEY_WOW64_32KEY : access;
}

ql::UniqueRegKey OpenKey(HKEY root, const wchar_t* path, REGSAM access) {
    ql::UniqueRegKey key;
    if (::RegOpenKeyExW(root, path, 0, InView(root, access), key.put()) != ERROR_SUCCESS) return {};
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

int LittleEndian(const BYTE (&bytes)[kNumberBytes]) {
    unsigned number = 0;
    for (std::size_t place = kNumberBytes; place-- > 0;) number = number << 8 | bytes[place];
    return static_cast<int>(number);
}

struct Query {
    const wchar_t* entry;
    void* buffer;
    DWORD bytes;  // of the buffer, then of the value
    DWORD type = REG_NONE;

    LSTATUS Ask(HKEY key) noexcept {
        return ::RegQueryValueExW(key, entry, nullptr, &type, static_cast<BYTE*>(buffer), &bytes);
    }
};

// The key of the section that was read last in one root: who reads a section's values one after the other has
// it opened once. That the key was deleted since is told by the query itself; that it was renamed, or that
// the root stands for another one, is not, so it is used for a moment only.
class RecentKey {
  public:
    bool Ask(HKEY root, const std::wstring& path, Query& query) {
        constexpr DWORD kMomentMilliseconds = 1000;
        const ql::CriticalSectionGuard guard(lock_);
        if (key_ && path == path_ && ::GetTickCount() - opened_ < kMomentMilliseconds) {
            const DWORD room = query.bytes;
            const LSTATUS result = query.Ask(key_.get());
            if (result != ERROR_KEY_DELETED) return result == ERROR_SUCCESS;
            query.bytes = room;
        }
        path_ = path;
        opened_ = ::GetTickCount();
        key_ = OpenKey(root, path.c_str(), KEY_QUERY_VALUE);
        return key_ && query.Ask(key_.get()) == ERROR_SUCCESS;
    }

  private:
    ql::CriticalSection lock_;
    ql::UniqueRegKey key_ QL_GUARDED_BY(lock_);
    std::wstring path_ QL_GUARDED_BY(lock_);
    DWORD opened_ QL_GUARDED_BY(lock_) = 0;
};

RecentKey g_recent[2];  // of the user, of the machine

bool Found(HKEY root, const std::wstring& path, Query& query) {
    return g_recent[root == kMachine ? 1 : 0].Ask(root, path, query);
}

bool Read(HKEY root, const std::wstring& path, const wchar_t* entry, RWWString& value) {
    wchar_t units[kTextUnits];
    Query query = {entry, units, sizeof units};
    if (!Found(root, path, query) || !IsTextType(query.type)) return false;
    value.assign(StoredText(units, query.bytes));
    return true;
}

bool Read(HKEY root, const std::wstring& path, const wchar_t* entry, int& value) {
    BYTE content[kNumberBytes] = {};
    Query query = {entry, content, sizeof content};
    if (!Found(root, path, query)) return false;
    value = LittleEndian(content);
    return true;
}

template <class Value>
bool ReadUserFirst(const wchar_t* base, const wchar_t* section, const wchar_t* entry, Value& value) {
    const std::wstring path = KeyPath(base, section);
    return Read(kUser, path, entry, value) || Read(kMachine, path, entry, value);
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

bool Put(const wchar_t* section, const wchar_t* entry, DWORD type, const void* bytes, std::size_t count) {
    const ql::UniqueRegKey key = CreateKey(section, type == REG_DWORD ? L"REG_DWORD" : L"REG_SZ");
    return key && ::RegSetValueExW(key.get(), entry, 0, type, static_cast<const BYTE*>(bytes),
                                   static_cast<DWORD>(count)) == ERROR_SUCCESS;
}

// Asked first without room, and again while the value grows.
bool ReadWhole(HKEY key, const wchar_t* entry, RegistryValue& value) {
    std::vector<unsigned char> content;
    for (;;) {
        DWORD type = REG_NONE;
        auto bytes = static_cast<DWORD>(content.size());
        const LSTATUS result = ::RegQueryValueExW(key, entry, nullptr, &type, content.data(), &bytes);
        if (result != ERROR_SUCCESS && result != ERROR_MORE_DATA) return false;
        if (result == ERROR_SUCCESS && bytes <= content.size()) {
            content.resize(bytes);
            value = {type, std::move(content)};
            return true;
        }
        content.resize(bytes);
    }
}

unsigned long ColorByte(const wchar_t* number) {
    return static_cast<unsigned long>(std::wcstol(number, nullptr, 10)) & 0xff;
}

}  // namespace

bool GetRegStringVal(const wchar_t* section, const wchar_t* entry, RWWString* value) {
    return ql::FailureIfThrown(false, [&] { return ReadUserFirst(kBase, section, entry, *value); });
}

bool GetRegIntVal(const wchar_t* section, const wchar_t* entry, unsigned int* value) {
    return ql::FailureIfThrown(false, [&] {
        int content = 0;
        const bool found = ReadUserFirst(kBase, section, entry, content);
        if (found) *value = static_cast<unsigned int>(content);
        return found;
    });
}

bool GetRegBoolVal(const wchar_t* section, const wchar_t* entry, bool* value) {
    return ql::FailureIfThrown(false, [&] { return ql::ReadFromRegistry(section, entry, *value); });
}

bool ReadRegValue(const wchar_t* section, const wchar_t* entry, bool machine, RegistryValue& value) noexcept {
    return ql::FailureIfThrown(false, [&] {
        const auto key = OpenKey(RootKey(machine), KeyPath(kBase, section).c_str(), KEY_QUERY_VALUE);
        return key && ReadWhole(key.get(), entry, value);
    });
}

bool TextOfRegValue(const RegistryValue& value, RWWString& text) noexcept {
    return ql::FailureIfThrown(false, [&] {
        wchar_t units[kTextUnits] = {};
        if (!IsTextType(static_cast<DWORD>(value.type)) || value.bytes.size() > sizeof units) return false;
        std::copy(value.bytes.begin(), value.bytes.end(), reinterpret_cast<unsigned char*>(units));
        text.assign(StoredText(units, value.bytes.size()));
        return true;
    });
}

bool NumberOfRegValue(const RegistryValue& value, int& number) noexcept {
    if (value.bytes.size() > kNumberBytes) return false;
    BYTE content[kNumberBytes] = {};
    std::copy(value.bytes.begin(), value.bytes.end(), content);
    number = LittleEndian(content);
    return true;
}

bool WriteRegValue(const wchar_t* section, const wchar_t* entry, const RegistryValue& value) noexcept {
    return ql::FailureIfThrown(false, [&] {
        // The system takes a zero in along that it finds right behind a text.
        std::vector<unsigned char> bytes = value.bytes;
        bytes.insert(bytes.end(), sizeof(wchar_t), 1);
        return Put(section, entry, static_cast<DWORD>(value.type), bytes.data(), value.bytes.size());
    });
}

bool DeleteRegValue(const wchar_t* section, const wchar_t* entry) noexcept {
    return ql::FailureIfThrown(false, [&] {
        const auto key = OpenKey(kUser, KeyPath(kBase, section).c_str(), KEY_SET_VALUE);
        return key && ::RegDeleteValueW(key.get(), entry) == ERROR_SUCCESS;
    });
}

unsigned long QLRegStringToColor(const RWWString& text, unsigned long defaultColor) {
    return ql::ColorOf(text, defaultColor);
}

RWWString GetQLRegStringEx(const wchar_t* section, const wchar_t* entry, bool machine) {
    return ql::FailureIfThrown(RWWString(), [&] {
        RWWString text;
        Read(RootKey(machine), KeyPath(kBase, section), entry, text);
        return text;
    });
}

RWWString GetQLProfileDirEx(const wchar_t* section, const wchar_t* entry, bool machine) {
    return ql::FailureIfThrown({}, [&] { return ql::RegistryDirectory(section, entry, machine); });
}

// NOLINTNEXTLINE(bugprone-reserved-identifier)
RWWString _GetOldQLProfileString(const wchar_t* section, const wchar_t* entry) {
    return GetOldQLRegString(section, entry, nullptr);
}

RWWString GetOldQLRegString(const wchar_t* section, const wchar_t* entry, const wchar_t* defaultText) {
    return ql::FailureIfThrown(RWWString(), [&] {
        RWWString text;
        ReadUserFirst(kOldBase, section, entry, text);
        if (text.isNull()) text = defaultText;
        return text;
    });
}

EnumQLEntries::EnumQLEntries(const wchar_t* section) {
    ql::FailureIfThrown(false, [&] {
        const RWWString path(KeyPath(kBase, section));
        return Collect(kUser, path) && Collect(kMachine, path);
    });
}

EnumQLEntries::EnumQLEntries(const wchar_t* section, bool machine, bool underBase) {
    ql::FailureIfThrown(false,
                        [&] { return Collect(RootKey(machine), KeyPath(underBase ? kBase : L"", section)); });
}

// Adds the names that are not in the list yet.
bool EnumQLEntries::Collect(HKEY root, const RWWString& path) {
    const auto less = [](const RWWString& a, const RWWString& b) {
        return ql::CompareIgnoringCase(a, b) < 0;
    };
    std::vector<RWWString> known;
    for (unsigned i = 0; i < NumEntries(); ++i) known.push_back((*this)(static_cast<int>(i)));
    std::sort(known.begin(), known.end(), less);

    const ql::UniqueRegKey key = OpenKey(root, path.data(), KEY_QUERY_VALUE);
    if (!key) return true;
    std::vector<wchar_t> units(kValueNameUnits);
    for (DWORD index = 0;; ++index) {
        DWORD length = kValueNameUnits;
        const LONG result =
            ::RegEnumValueW(key.get(), index, units.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (result == ERROR_MORE_DATA) continue;  // a name beyond the registry's own limit
        if (result != ERROR_SUCCESS) return true;
        const RWWString name(units.data(), length);
        if (!std::binary_search(known.begin(), known.end(), name, less)) AppendString(name);
    }
}

bool EnumQLEntries::GetNextEntry(RWWString& name) {
    if (next_ >= NumEntries()) return false;
    return ql::FailureIfThrown(false, [&] {
        name = (*this)(static_cast<int>(next_));
        ++next_;
        return true;
    });
}

void EnumQLSections::Closer::operator()(HKEY key) const noexcept {
    ::RegCloseKey(key);
}

EnumQLSections::EnumQLSections(HKEY root, const wchar_t* subkey)
    : key_(OpenKey(root, subkey, KEY_READ).release()) {}

EnumQLSections::EnumQLSections(const wchar_t* section, bool machine)
    : key_(ql::FailureIfThrown(static_cast<HKEY>(nullptr), [&] {
          return OpenKey(RootKey(machine), KeyPath(kBase, section).c_str(), KEY_READ).release();
      })) {}

RWWString EnumQLSections::GetNextSection() {
    wchar_t units[kSubkeyNameUnits];
    DWORD length = kSubkeyNameUnits;
    if (!key_ || ::RegEnumKeyExW(key_.get(), next_, units, &length, nullptr, nullptr, nullptr, nullptr) !=
                     ERROR_SUCCESS) {
        return {};
    }
    return ql::FailureIfThrown(RWWString(), [&] {
        RWWString name(units, length);
        ++next_;
        return name;
    });
}

namespace ql {

bool ReadFromRegistry(const wchar_t* section, const wchar_t* entry, RWWString& value) {
    return ReadUserFirst(kBase, section, entry, value);
}

bool ReadFromRegistry(const wchar_t* section, const wchar_t* entry, int& value) {
    return ReadUserFirst(kBase, section, entry, value);
}

bool ReadFromRegistry(const wchar_t* section, const wchar_t* entry, bool& value) {
    RWWString text;
    if (!ReadUserFirst(kBase, section, entry, text)) return false;
    value = StrToBool(text, false);
    return true;
}

RWWString RegistryDirectory(const wchar_t* section, const wchar_t* entry, bool machine) {
    RWWString folder;
    Read(RootKey(machine), KeyPath(kBase, section), entry, folder);
    CutTrailingBackslash(folder.str());
    return folder;
}

unsigned long ColorOf(std::wstring_view text, unsigned long defaultColor) noexcept {
    const std::size_t first = text.find(L',');
    if (first == std::wstring_view::npos || first == 0) return defaultColor;
    const std::size_t second = text.find(L',', first + 1);
    if (second == std::wstring_view::npos) return defaultColor;
    const wchar_t* units = text.data();
    return ColorByte(units) | ColorByte(units + first + 1) << 8 | ColorByte(units + second + 1) << 16;
}

RWWString ReadForeignText(HKEY root, const std::wstring& path, const wchar_t* entry, std::size_t mostUnits) {
    std::vector<wchar_t> units(mostUnits + 1);  // a stored text need not end in a zero
    Query query = {entry, units.data(), static_cast<DWORD>(mostUnits * sizeof(wchar_t))};
    const UniqueRegKey key = OpenKey(root, path.c_str(), KEY_QUERY_VALUE);
    if (!key || query.Ask(key.get()) != ERROR_SUCCESS) return {};
    return query.type == REG_SZ || query.type == REG_EXPAND_SZ ? RWWString(units.data()) : RWWString();
}

void WriteToRegistry(const wchar_t* section, const wchar_t* entry, const wchar_t* text) {
    if (text) {
        Put(section, entry, REG_SZ, text, (std::wcslen(text) + 1) * sizeof(wchar_t));
    } else if (const UniqueRegKey key = CreateKey(section, L"REG_SZ")) {
        ::RegDeleteValueW(key.get(), entry);
    }
}

void WriteToRegistry(const wchar_t* section, const wchar_t* entry, int value) {
    const auto content = static_cast<DWORD>(value);
    Put(section, entry, REG_DWORD, &content, sizeof content);
}

void WriteToRegistry(const wchar_t* section, const wchar_t* entry, bool value) {
    WriteToRegistry(section, entry, value ? g_trueStr : g_falseStr);
}

}  // namespace ql
