#pragma once

#include <memory>
#include <string_view>
#include <typeinfo>
#include <utility>

#include "json/json.h"
#include "rw/collectable.h"
#include "rw/text_hash.h"
#include "settings/registry.h"

// What the dictionary of a settings store holds: keys and typed values. Internal to the room.
namespace ql {

// Stands between section and entry in a key.
inline constexpr std::wstring_view kKeySeparator = L"<-^->";

inline bool NamesRegistrySetting(std::wstring_view key) {
    return key.find(kKeySeparator) != std::wstring_view::npos;
}

// A key in pieces, for looking up. It hashes and compares like the text that the pieces make, so that nothing
// has to be allocated to find a setting.
class SettingKey final : public RWCollectable {
  public:
    explicit SettingKey(std::wstring_view text) : first_(text) {}
    SettingKey(std::wstring_view section, std::wstring_view entry)
        : first_(section), separator_(kKeySeparator), last_(entry) {}

    RWWString Text() const;

    RWClassId isA() const override { return kRWCollectableOther; }
    unsigned hash() const override { return TextHash().Add(first_).Add(separator_).Add(last_).Value(); }
    bool isEqual(const RWCollectable* other) const override;

  private:
    std::wstring_view first_;
    std::wstring_view separator_;
    std::wstring_view last_;
};

// A key as the dictionary keeps it; equal to a SettingKey that makes the same text, whichever of them is
// asked.
class StoredSettingKey final : public RWCollectableWString {
  public:
    explicit StoredSettingKey(RWWString text) : RWCollectableWString(std::move(text)) {}
    bool isEqual(const RWCollectable* other) const override;
};

enum class SettingValueType : int { Text = 0, Integer = 1, Boolean = 2 };

template <class Value>
inline constexpr SettingValueType kSettingValueType = SettingValueType::Text;
template <>
inline constexpr SettingValueType kSettingValueType<int> = SettingValueType::Integer;
template <>
inline constexpr SettingValueType kSettingValueType<bool> = SettingValueType::Boolean;

// What every value of the dictionary is. Equal to a setting of the same class under the same key text.
class ICollectableSetting : public RWCollectable {
  public:
    // The key must outlive the setting: the dictionary owns both.
    explicit ICollectableSetting(const RWCollectableWString& key) : key_(key) {}

    virtual SettingValueType GetValueType() const = 0;
    virtual std::unique_ptr<JSON::Value> AsJson() = 0;

    RWClassId isA() const override { return kRWCollectableOther; }
    unsigned hash() const override { return key_.hash(); }
    bool isEqual(const RWCollectable* other) const override;

  protected:
    const RWCollectableWString& key_;
};

inline std::unique_ptr<JSON::Value> JsonOf(const RWWString& value) {
    return std::make_unique<JSON::Value>(value);
}
inline std::unique_ptr<JSON::Value> JsonOf(int value) {
    return std::make_unique<JSON::Value>(static_cast<double>(value));
}
inline std::unique_ptr<JSON::Value> JsonOf(bool value) {
    return std::make_unique<JSON::Value>(value);
}

// A setting that only lives in the store. It starts out with the first caller's default.
template <class Value>
class TSetting : public ICollectableSetting {
  public:
    TSetting(const RWCollectableWString& key, Value initial)
        : ICollectableSetting(key), value_(std::move(initial)) {}

    SettingValueType GetValueType() const override { return kSettingValueType<Value>; }
    std::unique_ptr<JSON::Value> AsJson() override { return JsonOf(value_); }

    const Value& Get() const { return value_; }
    bool IsSet() const { return isSet_; }
    template <class Source>
    void Set(const Source& value) {
        value_ = value;
        isSet_ = true;
    }

  protected:
    bool isSet_ = false;  // assigned, or found in the registry
    Value value_;
};

inline bool ReadFromRegistry(const wchar_t* section, const wchar_t* entry, RWWString& value) {
    return GetRegStringVal(section, entry, &value);
}
inline bool ReadFromRegistry(const wchar_t* section, const wchar_t* entry, bool& value) {
    return GetRegBoolVal(section, entry, &value);
}
inline bool ReadFromRegistry(const wchar_t* section, const wchar_t* entry, int& value) {
    unsigned int content = 0;
    const bool found = GetRegIntVal(section, entry, &content);
    if (found) value = static_cast<int>(content);
    return found;
}

// A setting that the registry backs. The default stands as its value when the registry has none.
template <class Value>
class TRegSetting final : public TSetting<Value> {
  public:
    using TSetting<Value>::TSetting;

    std::unique_ptr<JSON::Value> AsJson() override {
        EnsureLoaded();
        return TSetting<Value>::AsJson();
    }

    bool IsLoaded() const { return this->isSet_ || isLoaded_; }
    void EnsureLoaded() {
        if (!IsLoaded()) Load();
    }

  private:
    void Load() {
        const std::wstring_view key = this->key_.view();
        const std::size_t separator = key.find(kKeySeparator);
        const RWWString section(key.substr(0, separator));
        const wchar_t* entry = this->key_.data() + separator + kKeySeparator.size();
        this->isSet_ = ReadFromRegistry(section.data(), entry, this->value_);
        isLoaded_ = true;
    }

    bool isLoaded_ = false;
};

}  // namespace ql
