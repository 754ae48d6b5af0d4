#pragma once

#include <string_view>

namespace ql {

// FNV-1a over code units. A text added in pieces has the hash of the whole, so that a key need not be put
// together to be looked up.
class TextHash {
  public:
    TextHash& Add(std::wstring_view text) noexcept {
        for (wchar_t unit : text) state_ = (state_ ^ static_cast<unsigned>(unit)) * kPrime;
        return *this;
    }
    TextHash& Add(std::string_view text) noexcept {
        for (char byte : text) state_ = (state_ ^ static_cast<unsigned char>(byte)) * kPrime;
        return *this;
    }
    unsigned Value() const noexcept { return state_; }

  private:
    static constexpr unsigned kPrime = 16777619u;
    unsigned state_ = 2166136261u;
};

}  // namespace ql
