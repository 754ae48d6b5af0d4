#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace ql {

// A text that grows at its end. Usual lines find room in the object itself.
class LineText {
  public:
    LineText() noexcept = default;
    LineText(const LineText&) = delete;
    LineText& operator=(const LineText&) = delete;

    // What is there so far; the view ends with the next change.
    std::size_t size() const noexcept { return size_; }
    std::wstring_view View() const noexcept { return {begin_, size_}; }

    // So many characters at the end, for the caller to fill; throws std::bad_alloc.
    wchar_t* Extend(std::size_t count) {
        if (count > capacity_ - size_) Grow(count);
        wchar_t* const added = begin_ + size_;
        size_ += count;
        return added;
    }

    // Like Extend; the text must not be a piece of this one.
    void Append(std::wstring_view text) { std::copy(text.begin(), text.end(), Extend(text.size())); }

    void CutTo(std::size_t size) noexcept { size_ = size; }  // at most the present size

    // Puts a text in the place of the first `count` characters, of which there must be so many.
    void ReplaceFront(std::size_t count, std::wstring_view text) {
        if (text.size() == count) {
            std::copy(text.begin(), text.end(), begin_);
            return;
        }
        const std::wstring rest(View().substr(count));
        CutTo(0);
        Append(text);
        Append(rest);
    }

  private:
    static constexpr std::size_t kUsual = 320;

    void Grow(std::size_t count) {
        const std::size_t capacity = 2 * capacity_ + count;
        std::unique_ptr<wchar_t[]> grown(new wchar_t[capacity]);
        std::copy_n(begin_, size_, grown.get());
        more_ = std::move(grown);
        begin_ = more_.get();
        capacity_ = capacity;
    }

    wchar_t room_[kUsual];  // NOLINT(cppcoreguidelines-pro-type-member-init): filled as far as size_ tells
    std::unique_ptr<wchar_t[]> more_;
    wchar_t* begin_ = room_;
    std::size_t size_ = 0;
    std::size_t capacity_ = kUsual;
};

}  // namespace ql
