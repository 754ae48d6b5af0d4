#pragma once

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

// The wide (UTF-16) text of every interface: a counted string that may hold zero units. Wherever a pointer to
// text is taken, null is the empty text. A value type on std::wstring; views of it live as long as the string
// is neither changed nor destroyed. One object may be read by several threads, or written by one.
class RWWString {
  public:
    static constexpr std::size_t npos = std::wstring::npos;

    RWWString() noexcept = default;
    RWWString(const wchar_t* text) : text_(ViewOf(text)) {}
    RWWString(const wchar_t* text, std::size_t count) : text_(text, count) {}
    RWWString(std::wstring text) noexcept : text_(std::move(text)) {}
    explicit RWWString(std::wstring_view text) : text_(text) {}

    RWWString& operator=(const wchar_t* text) { return assign(ViewOf(text)); }
    RWWString& assign(std::wstring_view text) {
        text_.assign(text);
        return *this;
    }

    std::size_t length() const noexcept { return text_.size(); }
    bool isNull() const noexcept { return text_.empty(); }
    const wchar_t* data() const noexcept { return text_.c_str(); }  // null-ended
    wchar_t operator[](std::size_t index) const noexcept { return text_[index]; }
    wchar_t& operator[](std::size_t index) noexcept { return text_[index]; }

    // The standard library's view of the same text.
    operator std::wstring_view() const noexcept { return text_; }
    std::wstring_view view() const noexcept { return text_; }
    const std::wstring& str() const noexcept { return text_; }
    std::wstring& str() noexcept { return text_; }

    RWWString& append(std::wstring_view text) {
        text_.append(text);
        return *this;
    }
    RWWString& append(const wchar_t* text) { return append(ViewOf(text)); }
    RWWString& append(wchar_t unit) {
        text_.push_back(unit);
        return *this;
    }
    RWWString& prepend(std::wstring_view text) {
        text_.insert(0, text);
        return *this;
    }
    RWWString& prepend(const wchar_t* text) { return prepend(ViewOf(text)); }
    RWWString& operator+=(std::wstring_view text) { return append(text); }
    RWWString& operator+=(const wchar_t* text) { return append(text); }
    RWWString& operator+=(wchar_t unit) { return append(unit); }
    void resize(std::size_t length) { text_.resize(length); }  // new units are zero
    void clear() noexcept { text_.clear(); }

    // Comparison is by code unit; text/letter_case.h compares ignoring case.
    friend bool operator==(const RWWString& a, const RWWString& b) noexcept { return a.text_ == b.text_; }
    friend bool operator==(const RWWString& a, std::wstring_view b) noexcept { return a.text_ == b; }
    friend bool operator==(const RWWString& a, const wchar_t* b) noexcept { return a.text_ == ViewOf(b); }
    friend std::strong_ordering operator<=>(const RWWString& a, const RWWString& b) noexcept {
        return a.text_ <=> b.text_;
    }

    friend RWWString operator+(RWWString a, const RWWString& b) { return std::move(a.append(b.view())); }
    friend RWWString operator+(RWWString a, std::wstring_view b) { return std::move(a.append(b)); }
    friend RWWString operator+(RWWString a, const wchar_t* b) { return std::move(a.append(b)); }
    friend RWWString operator+(RWWString a, wchar_t b) { return std::move(a.append(b)); }

  private:
    static std::wstring_view ViewOf(const wchar_t* text) noexcept {
        return text ? std::wstring_view(text) : std::wstring_view();
    }

    std::wstring text_;
};
