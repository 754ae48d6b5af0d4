#include "settings/settings_store.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <optional>

#include "json/json.h"
#include "platform/failure.h"
#include "settings/locked_settings.h"
#include "settings/registry_values.h"
#include "text/blanks.h"

namespace {

using ql::LockedSettings;
using ql::Setting;
using ql::SettingKey;
using ql::SettingsDictionary;

// The decimal text of a host's number.
class NumberText {
  public:
    explicit NumberText(QlSetting setting) {
        char digits[kCapacity];
        char* end = std::to_chars(digits, digits + kCapacity, static_cast<int>(setting)).ptr;
        length_ = static_cast<std::size_t>(std::copy(digits, end, units_) - units_);
    }
    operator std::wstring_view() const { return {units_, length_}; }

  private:
    static constexpr std::size_t kCapacity = 11;  // "-2147483648"
    wchar_t units_[kCapacity];
    std::size_t length_;
};

// Runs the call on the dictionary while nobody else reads or changes it.
template <class Call>
bool Locked(CQlsSettings& store, Call call) {
    return ql::FailureIfThrown(false, [&] {
        LockedSettings& state = LockedSettings::Of(store);
        const ql::WriterGuard guard(state.lock);
        return call(state.settings);
    });
}

std::wstring_view ViewOf(const wchar_t* text) {
    return ql::TextOf(text);
}
std::wstring_view ViewOf(const RWWString& text) {
    return text;
}
int ViewOf(int number) {
    return number;
}
bool ViewOf(bool flag) {
    return flag;
}

// Whether the setting is set; the default, and false, when the name has another type.
template <class Value, class Default>
bool Take(const Setting& setting, Value* value, const Default& defaultValue) {
    if (setting.type() == ql::kSettingType<Value>) {
        setting.CopyTo(*value);
        return setting.isSet();
    }
    *value = defaultValue;
    return false;
}

// Whether the setting is set, when it is known.
template <class Value, class Default>
std::optional<bool> ReadKnownSetting(LockedSettings& state, const SettingKey& key, Value* value,
                                     const Default& defaultValue) {
    const ql::ReaderGuard guard(state.lock);
    const Setting* const setting = state.settings.Find(key);
    if (!setting) return std::nullopt;
    return Take(*setting, value, defaultValue);
}

// What is not known yet is read from the registry and known from then on, as absent too. The lock is held
// meanwhile, so that what another thread writes comes either before the reading or after it.
template <class Value, class Default>
bool ReadRegistrySetting(CQlsSettings& store, const wchar_t* section, const wchar_t* entry, Value* value,
                         const Default& defaultValue) {
    LockedSettings& state = LockedSettings::Of(store);
    const SettingKey key(section, entry);
    if (const auto known = ReadKnownSetting(state, key, value, defaultValue)) return *known;
    const ql::WriterGuard guard(state.lock);
    if (const Setting* const setting = state.settings.Find(key)) return Take(*setting, value, defaultValue);
    Value content(defaultValue);
    const bool found = ql::ReadFromRegistry(section, entry, content);
    state.settings.Assign(key, {ViewOf(content), found});
    *value = std::move(content);
    return found;
}

// The same, and false when memory ends.
template <class Value, class Default>
bool GetRegistrySetting(CQlsSettings& store, const wchar_t* section, const wchar_t* entry, Value* value,
                        const Default& defaultValue) {
    return ql::FailureIfThrown(
        false, [&] { return ReadRegistrySetting(store, section, entry, value, defaultValue); });
}

template <class Value>
bool AssignRegistrySetting(CQlsSettings& store, const wchar_t* section, const wchar_t* entry, Value value) {
    return Locked(store, [&](SettingsDictionary& settings) {
        return settings.Assign(SettingKey(section, entry), {ViewOf(value), true});
    });
}

// Cut toward zero; beyond 32 bits the nearest integer there is, and 0 for what is no number.
int Integer(double number) {
    if (std::isnan(number)) return 0;
    return static_cast<int>(std::clamp<double>(number, INT_MIN, INT_MAX));
}

std::wstring_view UpToZero(std::wstring_view text) {
    return text.substr(0, text.find(L'\0'));
}

void AssignMember(SettingsDictionary& settings, std::wstring_view name, const JSON::Value& value) {
    const SettingKey key(name);
    switch (value.kind()) {
        case JSON::String: settings.Assign(key, {UpToZero(value.text()), true}); break;
        case JSON::Number: settings.Assign(key, {Integer(value.number()), true}); break;
        case JSON::Bool: settings.Assign(key, {value.flag(), true}); break;
        default: break;
    }
}

std::unique_ptr<JSON::Value> AsJson(const Setting& setting) {
    switch (setting.type()) {
        case ql::SettingType::Integer:
            return std::make_unique<JSON::Value>(static_cast<double>(setting.number()));
        case ql::SettingType::Boolean: return std::make_unique<JSON::Value>(setting.number() != 0);
        default: return std::make_unique<JSON::Value>(RWWString(setting.text()));
    }
}

// Null when memory is short.
std::unique_ptr<JSON::Value> AsJson(const SettingsDictionary& settings) {
    auto root = std::make_unique<JSON::Value>(JSON::Object);
    for (const Setting* setting : settings.Sorted()) {
        if (!root->AddMember(RWWString(setting->key()), AsJson(*setting))) return nullptr;
    }
    return root;
}

}  // namespace

bool ql::ReadStoreText(CQlsSettings& store, const wchar_t* section, const wchar_t* entry, RWWString* value,
                       const wchar_t* defaultValue) {
    return ReadRegistrySetting(store, section, entry, value, defaultValue);
}

CQlsSettings::CQlsSettings()
    : state_(ql::FailureIfThrown(nullptr, [] { return std::make_shared<LockedSettings>(); })) {}

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
    const SettingKey key(number);
    return Locked(*this, [&](SettingsDictionary& settings) {
        return settings.Assign(key, {ViewOf(value), true});
    });
}

bool CQlsSettings::GetStrSetting(QlSetting setting, RWWString* value, const wchar_t* defaultValue) {
    const NumberText number(setting);
    const SettingKey key(number);
    return Locked(*this, [&](SettingsDictionary& settings) {
        if (const Setting* const known = settings.Find(key)) return Take(*known, value, defaultValue);
        settings.Assign(key, {ViewOf(defaultValue), false});
        *value = defaultValue;
        return false;
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
    const SettingKey key(number);
    return Locked(*this, [&](SettingsDictionary& settings) { return settings.Remove(key); });
}

bool CQlsSettings::GetRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool* value,
                                     bool defaultValue) {
    return GetRegistrySetting(*this, section, entry, value, defaultValue);
}

bool CQlsSettings::GetRegIntSetting(const wchar_t* section, const wchar_t* entry, int* value,
                                    int defaultValue) {
    return GetRegistrySetting(*this, section, entry, value, defaultValue);
}

bool CQlsSettings::GetRegStrSetting(const wchar_t* section, const wchar_t* entry, RWWString* value,
                                    const wchar_t* defaultValue) {
    return GetRegistrySetting(*this, section, entry, value, defaultValue);
}

bool CQlsSettings::SetRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool value) {
    return AssignRegistrySetting(*this, section, entry, value);
}

bool CQlsSettings::SetRegIntSetting(const wchar_t* section, const wchar_t* entry, int value) {
    return AssignRegistrySetting(*this, section, entry, value);
}

bool CQlsSettings::SetRegStrSetting(const wchar_t* section, const wchar_t* entry, const wchar_t* value) {
    return AssignRegistrySetting(*this, section, entry, value);
}

bool CQlsSettings::ClearRegSetting(const wchar_t* section, const wchar_t* entry) {
    return Locked(*this,
                  [&](SettingsDictionary& settings) { return settings.Remove(SettingKey(section, entry)); });
}

bool CQlsSettings::IsRegIntSettingSet(const wchar_t*, const wchar_t*) {
    return false;
}

bool CQlsSettings::GetAbort() const noexcept {
    return abort_;
}

void CQlsSettings::SetAbort() noexcept {
    abort_ = true;
}

void CQlsSettings::ClearAbort() noexcept {
    abort_ = false;
}

bool CQlsSettings::GetSerializedSettings(RWWString* json) {
    json->clear();
    return ql::FailureIfThrown(false, [&] {
        std::unique_ptr<JSON::Value> root;
        {
            LockedSettings& state = LockedSettings::Of(*this);
            const ql::ReaderGuard guard(state.lock);
            root = AsJson(state.settings);
        }
        *json = JSON::Serialize(root.get());
        return !json->isNull();
    });
}

bool CQlsSettings::SetFromSerializedSettings(const wchar_t* json) {
    return ql::FailureIfThrown(false, [&] {
        const std::unique_ptr<JSON::Value> root = JSON::Parse(ql::TextOf(json));
        if (!root || root->kind() != JSON::Object) return false;
        LockedSettings& state = LockedSettings::Of(*this);
        const ql::WriterGuard guard(state.lock);
        RWWString key;
        for (JSON::Value* member = root->FirstMember(key); member; member = root->NextMember(key)) {
            AssignMember(state.settings, UpToZero(key), *member);
        }
        return true;
    });
}
