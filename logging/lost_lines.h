#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ql {

// "12 lines were lost: the disk was full" and a line feed. Takes no memory.
class LostLinesText {
  public:
    LostLinesText(std::uint32_t lines, std::wstring_view cause) noexcept {
        char digits[kLongest];
        char* const end = std::to_chars(digits, std::end(digits), lines).ptr;
        length_ = static_cast<std::size_t>(std::copy(digits, end, text_) - text_);
        Put(lines == 1 ? L" line was lost: " : L" lines were lost: ");
        Put(cause);
        Put(L"\n");
        text_[length_] = L'\0';
    }

    const wchar_t* Text() const noexcept { return text_; }

  private:
    static constexpr std::size_t kLongest = 80;

    void Put(std::wstring_view part) noexcept { length_ += part.copy(text_ + length_, kLongest - length_); }

    std::size_t length_;
    wchar_t text_[kLongest + 1];
};

}  // namespace ql
