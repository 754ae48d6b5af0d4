#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "rw/wide_string.h"
#include "settings/setting_key.h"

namespace ql {

enum class SettingType : unsigned { Text, Integer, Boolean };

template <class Value>
inline constexpr SettingType kSettingType = SettingType::Text;
template <>
inline constexpr SettingType kSettingType<int> = SettingType::Integer;
template <>
inline constexpr SettingType kSettingType<bool> = SettingType::Boolean;

// What a setting holds, as it is handed to the dictionary. isSet: assigned, or found in the registry; else it
// is the first reader's default.
struct SettingContent {
    SettingContent(std::wstring_view value, bool set) : type(SettingType::Text), isSet(set), text(value) {}
    SettingContent(int value, bool set) : type(SettingType::Integer), isSet(set), number(value) {}
    SettingContent(bool value, bool set) : type(SettingType::Boolean), isSet(set), number(value) {}

    SettingType type;
    bool isSet;
    std::wstring_view text;
    int number = 0;
};

// One setting: this head, and behind it in the same block of memory the units of its key and of its text.
class Setting {
  public:
    struct Deleter {
        void operator()(Setting* setting) const noexcept;
    };
    using Owner = std::unique_ptr<Setting, Deleter>;
    static Owner Make(const SettingKey& key, const SettingContent& content);

    std::wstring_view key() const noexcept { return {units(), keyLength_}; }
    bool Has(const SettingKey& key) const noexcept { return key.Is(units(), sectionLength_, keyLength_); }
    SettingType type() const noexcept { return static_cast<SettingType>(type_); }
    bool isSet() const noexcept { return isSet_; }

    void CopyTo(RWWString& value) const { value.assign(text()); }
    void CopyTo(int& value) const noexcept { value = number_; }
    void CopyTo(bool& value) const noexcept { value = number_ != 0; }
    std::wstring_view text() const noexcept { return {units() + keyLength_, textLength_}; }
    int number() const noexcept { return number_; }

    // Whether there was room: a longer text needs another block.
    bool Assign(const SettingContent& content) noexcept;

  private:
    Setting(const SettingKey& key, const SettingContent& content) noexcept;
    wchar_t* units() noexcept { return reinterpret_cast<wchar_t*>(this + 1); }
    const wchar_t* units() const noexcept { return reinterpret_cast<const wchar_t*>(this + 1); }

    unsigned sectionLength_;
    unsigned keyLength_ : 29;
    unsigned type_ : 2;
    unsigned isSet_ : 1;
    union {
        unsigned textLength_;
        int number_;
    };
};

// The settings of one store by key. Not locked: its store does that. What runs out of memory throws
// std::bad_alloc and has changed nothing.
class SettingsDictionary {
  public:
    SettingsDictionary() noexcept = default;
    SettingsDictionary(const SettingsDictionary&) = delete;
    SettingsDictionary& operator=(const SettingsDictionary&) = delete;
    ~SettingsDictionary();

    const Setting* Find(const SettingKey& key) const noexcept;  // null when absent

    // Gives the key's setting another content, and makes the setting when there is none. A setting keeps its
    // type: false, and nothing changes, when it has another one.
    bool Assign(const SettingKey& key, const SettingContent& content);

    bool Remove(const SettingKey& key) noexcept;  // whether there was one

    std::vector<const Setting*> Sorted() const;  // in ascending order of the keys

  private:
    // The hash stands beside the pointer, so that other settings on the way are passed without a look at
    // them.
    struct Place {
        std::uint32_t hash;
        Setting* setting;  // null in a free place
    };

    std::size_t Next(std::size_t place) const noexcept { return (place + 1) & (places_.size() - 1); }
    Place* PlaceOf(const SettingKey& key) noexcept;
    void MakeRoomForOne();
    void CloseGapAt(std::size_t place) noexcept;

    // As many as a power of two, or none, and at least half of them free. A setting stands at the place that
    // its hash ends in, or else in the first free place behind that, beginning anew behind the last.
    std::vector<Place> places_;
    std::size_t count_ = 0;
};

}  // namespace ql
