#pragma once

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "rw/hash_dictionary.h"
#include "settings/setting_objects.h"

namespace ql {

// The settings of one store by key; owns keys and settings. Settings whose key holds the separator are
// TRegSetting, all others TSetting. Not locked: its store does that.
class SettingsDictionary {
  public:
    SettingsDictionary() = default;
    SettingsDictionary(const SettingsDictionary&) = delete;
    SettingsDictionary& operator=(const SettingsDictionary&) = delete;
    ~SettingsDictionary() { settings_.clearAndDestroy(); }

    // The key's setting, a new one made with the initial value when there is none; null when the key has a
    // setting of another value type.
    template <template <class> class Setting, class Value, class Initial>
    Setting<Value>* FindOrCreate(const SettingKey& key, const Initial& initial) {
        auto* known = static_cast<ICollectableSetting*>(settings_.findValue(&key));
        if (!known) return Create<Setting<Value>>(key, Value(initial));
        return known->GetValueType() == kSettingValueType<Value> ? static_cast<Setting<Value>*>(known)
                                                                 : nullptr;
    }

    // The key's setting; null when there is none of that value type.
    template <template <class> class Setting, class Value>
    const Setting<Value>* Find(const SettingKey& key) const {
        const auto* known = static_cast<const ICollectableSetting*>(settings_.findValue(&key));
        const bool fits = known && known->GetValueType() == kSettingValueType<Value>;
        return fits ? static_cast<const Setting<Value>*>(known) : nullptr;
    }

    // Whether there was one.
    bool Remove(const SettingKey& key) {
        RWCollectable* value = nullptr;
        const std::unique_ptr<RWCollectable> storedKey(settings_.removeKeyAndValue(&key, value));
        const std::unique_ptr<RWCollectable> setting(value);
        return storedKey != nullptr;
    }

    // Key texts and settings in ascending order of the texts; valid until the next change.
    using Entry = std::pair<const RWWString*, ICollectableSetting*>;
    std::vector<Entry> Sorted() const {
        std::vector<Entry> entries;
        entries.reserve(settings_.entries());
        for (const auto& [key, setting] : settings_) {
            entries.emplace_back(static_cast<const StoredSettingKey*>(key),
                                 static_cast<ICollectableSetting*>(setting));
        }
        std::sort(entries.begin(), entries.end(),
                  [](const Entry& a, const Entry& b) { return *a.first < *b.first; });
        return entries;
    }

  private:
    template <class Setting, class Value>
    Setting* Create(const SettingKey& key, Value&& initial) {
        auto storedKey = std::make_unique<StoredSettingKey>(key.Text());
        auto setting = std::make_unique<Setting>(*storedKey, std::forward<Value>(initial));
        settings_.insertKeyAndValue(storedKey.get(), setting.get());
        static_cast<void>(storedKey.release());  // the dictionary owns both now
        return setting.release();
    }

    RWHashDictionary settings_;
};

}  // namespace ql
