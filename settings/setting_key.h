#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

#include "text/blanks.h"

namespace ql {

// Stands between section and entry in the key of a registry-backed setting.
inline constexpr std::wstring_view kKeySeparator = L"<-^->";

// A setting's key as one stretch of text, so that it is hashed and compared in one go; nothing has to be
// allocated to look for a setting, but for a very long key.
class SettingKey {
  public:
    explicit SettingKey(std::wstring_view text) : SettingKey(text, {}, {}) {}
    SettingKey(const wchar_t* section, const wchar_t* entry)
        : SettingKey(TextOf(section), kKeySeparator, TextOf(entry)) {}
    SettingKey(const SettingKey&) = delete;
    SettingKey& operator=(const SettingKey&) = delete;

    std::wstring_view text() const noexcept { return {units_, length_}; }

  private:
    static constexpr std::size_t kUsual = 96;

    SettingKey(std::wstring_view section, std::wstring_view separator, std::wstring_view entry)
        : length_(section.size() + separator.size() + entry.size()) {
        if (length_ > kUsual) {
            long_ = std::make_unique_for_overwrite<wchar_t[]>(length_);
            units_ = long_.get();
        }
        wchar_t* end = units_;
        for (const std::wstring_view piece : {section, separator, entry})
            end = std::copy(piece.begin(), piece.end(), end);
    }

    std::size_t length_;
    std::unique_ptr<wchar_t[]> long_;
    wchar_t usual_[kUsual];
    wchar_t* units_ = usual_;
};

}  // namespace ql
