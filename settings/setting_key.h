#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
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
    explicit SettingKey(std::wstring_view text) { Join({text}); }
    SettingKey(const wchar_t* section, const wchar_t* entry) {
        if (!JoinUsual(section ? section : L"", entry ? entry : L""))
            Join({TextOf(section), kKeySeparator, TextOf(entry)});
    }
    SettingKey(const SettingKey&) = delete;
    SettingKey& operator=(const SettingKey&) = delete;

    std::wstring_view text() const noexcept { return {units_, length_}; }

  private:
    static constexpr std::size_t kUsual = 96;

    void Join(std::initializer_list<std::wstring_view> pieces) {
        for (const std::wstring_view piece : pieces) length_ += piece.size();
        if (length_ > kUsual) {
            long_ = std::make_unique_for_overwrite<wchar_t[]>(length_);
            units_ = long_.get();
        }
        wchar_t* end = units_;
        for (const std::wstring_view piece : pieces) end = std::copy(piece.begin(), piece.end(), end);
    }

    // Whether the key fits into the usual room. Measuring the texts before copying them would take longer.
    bool JoinUsual(const wchar_t* section, const wchar_t* entry) noexcept {
        wchar_t* const limit = std::end(usual_);
        wchar_t* end = CopyToZero(section, usual_, limit - kKeySeparator.size());
        if (*section) return false;
        end = std::copy(kKeySeparator.begin(), kKeySeparator.end(), end);
        end = CopyToZero(entry, end, limit);
        if (*entry) return false;
        length_ = static_cast<std::size_t>(end - usual_);
        return true;
    }

    // Moves the text on to its zero, or to what there is no room for, and answers the end of the copy.
    static wchar_t* CopyToZero(const wchar_t*& text, wchar_t* out, const wchar_t* limit) noexcept {
        while (*text && out != limit) *out++ = *text++;
        return out;
    }

    std::size_t length_ = 0;
    std::unique_ptr<wchar_t[]> long_;
    wchar_t usual_[kUsual];
    wchar_t* units_ = usual_;
};

}  // namespace ql
