#include "settings/settings_store.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <optional>

#include "json/json.h"
#include "platform/critical_section.h"
#include "platform/failure.h"
#include "settings/settings_dictionary.h"
#include "text/blanks.h"

namespace ql {

struct LockedSettings {
    SharedLock lock;
    SettingsDictionary settings QL_GUARDED_BY(lock);
};

}  // namespace ql

namespace {

using ql::LockedSettings;
using ql::SettingKey;
using ql::SettingsDictionary;
using ql::TRegSetting;
using ql::TSetting;

SettingKey RegistryKey(const wchar_t* section, const wchar_t* entry) {
    return {ql::TextOf(section), ql::TextOf(entry)};
}

// The decimal text of a host's number.
class NumberText {
  public:
    explicit NumberText(QlSetting setting) {
        char digits[kCapacity];
        char* end = std::to_chars(digits, digits + kCapacity, static_cast<int>(setting)).ptr;
        length_ = static_cast<std::size_t>(std::copy(digits, end, units_) - units_);
    }
    SettingKey Key() const { return SettingKey({units_, length_}); }

  private:
    static constexpr std::size_t kCapacity = 11;  // "-2147483648"
    wchar_t units_[kCapacity];
    std::size_t length_;
};

// Runs the call on the dictionary while nobody else reads or changes it.
template <class Call>
bool Locked(LockedSettings& state, Call call) {
    return ql::FailureIfThrown(false, [&] {
        const ql::WriterGuard guard(state.lock);
        return call(state.settings);
    });
}

template <template <class> class Setting, class Value, class Source>
bool Assign(SettingsDictionary& settings, const SettingKey& key, const Source& value) {
    Setting<Value>* setting = settings.FindOrCreate<Setting, Value>(key, Value());
    if (setting) setting->Set(value);
    return setting != nullptr;
}

template <class Value, class Source>
bool AssignRegistrySetting(LockedSettings& state, const SettingKey& key, const Source& value) {
    return Locked(state, [&](SettingsDictionary& settings) {
        return Assign<TRegSetting, Value>(settings, key, value);
    });
}

// Whether the setting is set, if it is known and needs no look into the registry.
template <class Value>
std::optional<bool> ReadKnownSetting(LockedSettings& state, const SettingKey& key, Value* value) {
    const ql::ReaderGuard guard(state.lock);
    const auto* setting = state.settings.Find<TRegSetting, Value>(key);
    if (!setting || !setting->IsLoaded()) return std::nullopt;
    *value = setting->Get();
    return setting->IsSet();
}

template <class Value, class Default>
bool LoadRegistrySetting(LockedSettings& state, const SettingKey& key, Value* value,
                         const Default& defaultValue) {
    return Locked(state, [&](SettingsDictionary& settings) {
        auto* setting = settings.FindOrCreate<TRegSetting, Value>(key, defaultValue);
        if (!setting) {
            *value = defaultValue;
            return false;
        }
        setting->EnsureLoaded();
        *value = setting->Get();
        return setting->IsSet();
    });
}

template <class Value, class Default>
bool ReadRegistrySetting(LockedSettings& state, const SettingKey& key, Value* value,
                         const Default& defaultValue) {
    return ql::FailureIfThrown(false, [&] {
        const std::optional<bool> known = ReadKnownSetting(state, key, value);
        return known ? *known : LoadRegistrySetting(state, key, value, defaultValue);
    });
}

// Cut toward zero; beyond 32 bits the nearest integer there is, and 0 for what is no number.
int Integer(double number) {
    if (std::isnan(number)) return 0;
    if (number <= INT_MIN) return INT_MIN;
    if (number >= INT_MAX) return INT_MAX;
    return static_cast<int>(number);
}

std::wstring_view UpToZero(std::wstring_view text) {
    return text.substr(0, text.find(L'\0'));
}

template <template <class> class Setting>
void AssignJson(SettingsDictionary& settings, const SettingKey& key, const JSON::Value& value) {
    switch (value.kind()) {
        case JSON::String:
            Assign<Setting, RWWString>(settings, key, RWWString(UpToZero(value.text())));
            break;
        case JSON::Number: Assign<Setting, int>(settings, key, Integer(value.number())); break;
        case JSON::Bool: Assign<Setting, bool>(settings, key, value.flag()); break;
        default: break;
    }
}

void AssignMember(SettingsDictionary& settings, std::wstring_view name, const JSON::Value& value) {
    const SettingKey key(name);
    if (ql::NamesRegistrySetting(name)) {
        AssignJson<TRegSetting>(settings, key, value);
    } else {
        AssignJson<TSetting>(settings, key, value);
    }
}

// Null when memory is short.
std::unique_ptr<JSON::Value> AsJson(const SettingsDictionary& settings) {
    auto root = std::make_unique<JSON::Value>(JSON::Object);
    for (const auto& [key, setting] : settings.Sorted()) {
        if (!root->AddMember(*key, setting->AsJson())) return nullptr;
    }
    return root;
}

}  // namespace

CQlsSettings::CQlsSettings() : state_(std::make_shared<LockedSettings>()) {}

CQlsSettings::~CQlsSettings() = default;

CQlsSettings::CQlsSettings(const CQlsSettings& other) noexcept
    : state_(other.state_), abort_(other.abort_.load()) {}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): both members can be assigned to themselves
CQlsSettings& CQlsSettings::operator=(const CQlsSettings& other) noexcept {
    state_ = other.state_;
    abort_ = other.abort_.load();
    return *this;
}

bool CQlsSettings::SetStrSetting(QlSetting setting, const wchar_t* value) {
    const NumberText number(setting);
    return Locked(*state_, [&](SettingsDictionary& settings) {
        return Assign<TSetting, RWWString>(settings, number.Key(), value);
    });
}

bool CQlsSettings::GetStrSetting(QlSetting setting, RWWString* value, const wchar_t* defaultValue) {
    const NumberText number(setting);
    return Locked(*state_, [&](SettingsDictionary& settings) {
        auto* known = settings.FindOrCreate<TSetting, RWWString>(number.Key(), defaultValue);
        if (known) {
            *value = known->Get();
        } else {
            *value = defaultValue;
        }
        return known && known->IsSet();
    });
}

bool CQlsSettings::SetBoolSetting(QlSetting, bool) {
    return false;
}

bool CQlsSettings::GetBoolSetting(QlSetting, bool*, bool) {
    return false;
}

bool CQlsSettings::SetIntSetting(QlSetting, int) {
    return false;
}

bool CQlsSettings::GetIntSetting(QlSetting, int*, int) {
    return false;
}

bool CQlsSettings::ClearSetting(QlSetting setting) {
    const NumberText number(setting);
    return Locked(*state_, [&](SettingsDictionary& settings) { return settings.Remove(number.Key()); });
}

bool CQlsSettings::GetRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool* value,
                                     bool defaultValue) {
    return ReadRegistrySetting(*state_, RegistryKey(section, entry), value, defaultValue);
}

bool CQlsSettings::GetRegIntSetting(const wchar_t* section, const wchar_t* entry, int* value,
                                    int defaultValue) {
    return ReadRegistrySetting(*state_, RegistryKey(section, entry), value, defaultValue);
}

bool CQlsSettings::GetRegStrSetting(const wchar_t* section, const wchar_t* entry, RWWString* value,
                                    const wchar_t* defaultValue) {
    return ReadRegistrySetting(*state_, RegistryKey(section, entry), value, defaultValue);
}

bool CQlsSettings::SetRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool value) {
    return AssignRegistrySetting<bool>(*state_, RegistryKey(section, entry), value);
}

bool CQlsSettings::SetRegIntSetting(const wchar_t* section, const wchar_t* entry, int value) {
    return AssignRegistrySetting<int>(*state_, RegistryKey(section, entry), value);
}

bool CQlsSettings::SetRegStrSetting(const wchar_t* section, const wchar_t* entry, const wchar_t* value) {
    return AssignRegistrySetting<RWWString>(*state_, RegistryKey(section, entry), value);
}

bool CQlsSettings::ClearRegSetting(const wchar_t* section, const wchar_t* entry) {
    return Locked(*state_,
                  [&](SettingsDictionary& settings) { return settings.Remove(RegistryKey(section, entry)); });
}

bool CQlsSettings::IsRegIntSettingSet(const wchar_t*, const wchar_t*) {
    return false;
}

bool CQlsSettings::GetSerializedSettings(RWWString* json) {
    json->clear();
    return ql::FailureIfThrown(false, [&] {
        std::unique_ptr<JSON::Value> root;
        {
            const ql::WriterGuard guard(state_->lock);
            root = AsJson(state_->settings);
        }
        *json = JSON::Serialize(root.get());
        return !json->isNull();
    });
}

bool CQlsSettings::SetFromSerializedSettings(const wchar_t* json) {
    return ql::FailureIfThrown(false, [&] {
        const std::unique_ptr<JSON::Value> root = JSON::Parse(ql::TextOf(json));
        if (!root || root->kind() != JSON::Object) return false;
        const ql::WriterGuard guard(state_->lock);
        RWWString key;
        for (JSON::Value* member = root->FirstMember(key); member; member = root->NextMember(key)) {
            AssignMember(state_->settings, UpToZero(key), *member);
        }
        return true;
    });
}
