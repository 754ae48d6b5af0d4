#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace ql {

// Stands between section and entry in the key of a registry-backed setting.
inline constexpr std::wstring_view kKeySeparator = L"<-^->";

// Another one in each process, so that nobody can make a document whose keys all fall into one place.
extern const std::uint32_t g_hashSeed;

// Four units a round: the two halves of a 64-bit product go on, each mixed with two more units.
class KeyHash {
  public:
    // Takes in a text, which goes on until the answer is yes, and answers its end.
    template <class IsEnd>
    const wchar_t* Take(const wchar_t* text, IsEnd isEnd) noexcept {
        const auto unit = [&text] { return std::uint32_t{static_cast<std::uint16_t>(*text++)}; };
        std::uint32_t first, second;
        while (true) {
            first = second = 0;
            if (isEnd(text)) break;
            first = unit();
            if (isEnd(text)) break;
            first |= unit() << 16;
            if (isEnd(text)) break;
            second = unit();
            if (isEnd(text)) break;
            second |= unit() << 16;
            Mix(first, second);
        }
        Mix(first, second);
        return text;
    }
    std::uint32_t value() const noexcept { return low_ ^ high_; }

  private:
    void Mix(std::uint32_t first, std::uint32_t second) noexcept {
        const std::uint64_t product =
            std::uint64_t{low_ ^ first ^ 0x53c5ca59u} * (high_ ^ second ^ 0x74743c1bu);
        low_ = static_cast<std::uint32_t>(product);
        high_ = static_cast<std::uint32_t>(product >> 32);
    }

    std::uint32_t low_ = g_hashSeed, high_ = ~g_hashSeed;
};

// So many units at a time, the last of which may have been looked at before. A call of the library's
// comparison would take longer.
template <std::size_t kUnits>
bool SameUnitsBy(const wchar_t* a, const wchar_t* b, std::size_t count) noexcept {
    const auto same = [&](std::size_t at) {
        return std::memcmp(a + at, b + at, kUnits * sizeof(wchar_t)) == 0;
    };
    for (std::size_t at = 0; at + kUnits < count; at += kUnits) {
        if (!same(at)) return false;
    }
    return same(count - kUnits);
}

inline bool SameUnits(const wchar_t* a, const wchar_t* b, std::size_t count) noexcept {
    if (count >= 4) return SameUnitsBy<4>(a, b, count);
    return count == 0 || SameUnitsBy<1>(a, b, count);
}

// A setting's key: a section and an entry with the separator between them, or a text that has none. It is
// hashed and compared by its pieces where they stand, so that nothing is copied to look for a setting. The
// texts that it is made of must outlive it.
class SettingKey {
  public:
    explicit SettingKey(std::wstring_view text) noexcept { Split(text); }
    SettingKey(const wchar_t* section, const wchar_t* entry) {
        KeyHash hash;
        bool mayHoldSeparator = false;  // told on the way: hardly any section is looked at once more
        section_ = Taken(hash, section ? section : L"", [&](const wchar_t* at) {
            mayHoldSeparator |= *at == kKeySeparator[0];
            return *at == L'\0';
        });
        separator_ = kKeySeparator;
        entry_ = Taken(hash, entry ? entry : L"", [](const wchar_t* at) { return *at == L'\0'; });
        hash_ = hash.value();
        if (mayHoldSeparator && section_.find(kKeySeparator) != std::wstring_view::npos) JoinAndSplit();
    }
    SettingKey(const SettingKey&) = delete;
    SettingKey& operator=(const SettingKey&) = delete;

    std::uint32_t hash() const noexcept { return hash_; }
    std::size_t size() const noexcept { return section_.size() + separator_.size() + entry_.size(); }

    bool Is(std::wstring_view text) const noexcept {
        if (text.size() != size()) return false;
        const wchar_t* const separator = text.data() + section_.size();
        return SameUnits(text.data(), section_.data(), section_.size()) &&
               SameUnits(separator, separator_.data(), separator_.size()) &&
               SameUnits(separator + separator_.size(), entry_.data(), entry_.size());
    }
    void CopyTo(wchar_t* out) const noexcept {
        for (const std::wstring_view piece : {section_, separator_, entry_})
            out = std::copy(piece.begin(), piece.end(), out);
    }

  private:
    template <class IsEnd>
    static std::wstring_view Taken(KeyHash& hash, const wchar_t* text, IsEnd isEnd) noexcept {
        return {text, static_cast<std::size_t>(hash.Take(text, isEnd) - text)};
    }

    // At the first separator, so that the same text has the same pieces however it came to be.
    void Split(std::wstring_view text) noexcept {
        const std::size_t end = std::min(text.find(kKeySeparator), text.size());
        KeyHash hash;
        const auto take = [&hash](std::wstring_view piece) {
            hash.Take(piece.data(),
                      [end = piece.data() + piece.size()](const wchar_t* at) { return at == end; });
            return piece;
        };
        section_ = take(text.substr(0, end));
        if (end < text.size()) {
            separator_ = kKeySeparator;
            entry_ = take(text.substr(end + kKeySeparator.size()));
        }
        hash_ = hash.value();
    }

    // For a section that holds a separator itself.
    void JoinAndSplit() {
        joined_ = std::make_unique<std::wstring>(size(), L'\0');
        CopyTo(joined_->data());
        Split(*joined_);
    }

    std::wstring_view section_, separator_, entry_;
    std::uint32_t hash_;
    std::unique_ptr<std::wstring> joined_;
};

}  // namespace ql
