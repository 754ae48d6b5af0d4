#pragma once

#include <cstddef>
#include <string_view>

namespace ql {

// The polynomial of the code units, modulo 2 to the 32nd. A text added in pieces has the hash of the whole,
// so that a key need not be put together to be looked up. Hashes are never stored: they may change with the
// library.
class TextHash {
  public:
    TextHash& Add(std::wstring_view text) noexcept { return AddUnits(text.data(), text.size()); }
    TextHash& Add(std::string_view text) noexcept { return AddUnits(text.data(), text.size()); }
    unsigned Value() const noexcept { return state_; }

  private:
    static constexpr unsigned kBase = 16777619u;
    static constexpr unsigned kBase2 = kBase * kBase;
    static constexpr unsigned kBase3 = kBase2 * kBase;
    static constexpr unsigned kBase4 = kBase3 * kBase;

    // Four units at a time: their products do not wait for each other.
    template <class Unit>
    TextHash& AddUnits(const Unit* units, std::size_t count) noexcept {
        const Unit* const end = units + count;
        for (; end - units >= 4; units += 4) {
            state_ = state_ * kBase4 + Number(units[0]) * kBase3 + Number(units[1]) * kBase2 +
                     Number(units[2]) * kBase + Number(units[3]);
        }
        for (; units != end; ++units) state_ = state_ * kBase + Number(*units);
        return *this;
    }

    static constexpr unsigned Number(wchar_t unit) noexcept { return static_cast<unsigned>(unit); }
    static constexpr unsigned Number(char byte) noexcept { return static_cast<unsigned char>(byte); }

    unsigned state_ = 2166136261u;
};

}  // namespace ql
