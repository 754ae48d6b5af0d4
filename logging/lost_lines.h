#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ql {

// "12 lines were lost: the disk was full" and a line feed. Takes no memory.
class LostLinesText {
  public:
    LostLinesText(std::uint32_t lines, std::wstring_view cause) noexcept {
        char digits[kLongest] = {};
        const char* const end = std::to_chars(digits, digits + kLongest, lines).ptr;
        for (const char* at = digits; at != end; ++at) text_[length_++] = static_cast<wchar_t>(*at);
        Put(lines == 1 ? L" line was lost: " : L" lines were lost: ");
        Put(cause);
        Put(L"\n");
        text_[length_] = L'\0';
    }

    const wchar_t* Text() const noexcept { return text_; }

  private:
    static constexpr std::size_t kLongest = 80;

    void Put(std::wstring_view part) noexcept { length_ += part.copy(text_ + length_, kLongest - length_); }

    std::size_t length_ = 0;
    wchar_t text_[kLongest + 1];
};

}  // namespace ql
