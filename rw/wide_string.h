#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

#include "rw/text_view.h"

// The wide (UTF-16) text of every interface: a counted string that may hold zero units. Wherever a pointer to
// text is taken, null is the empty text. A value type on std::wstring that converts from and to
// std::wstring_view by itself; views of it live as long as the string is neither changed nor destroyed. One
// object may be read by several threads, or written by one. Only a lack of memory throws: std::bad_alloc (and
// std::length_error for a text that no memory holds), and the string is then as it was.
class RWWString {
  public:
    static constexpr std::size_t npos = std::wstring::npos;  // no place, and as a count: to the end

    RWWString() noexcept = default;  // the empty text

    // A text up to its zero, or of so many units; a copy of a counted text.
    RWWString(const wchar_t* text) : text_(ql::TextOf(text)) {}
    RWWString(const wchar_t* text, std::size_t count) : text_(text ? text : L"", text ? count : 0) {}
    RWWString(std::wstring text) noexcept : text_(std::move(text)) {}
    RWWString(std::wstring_view text) : text_(text) {}

    // Holds this text from now on, which may be a part of the string itself.
    RWWString& operator=(const wchar_t* text) { return assign(text); }
    RWWString& assign(ql::TextView text) {
        text_.assign(text);
        return *this;
    }

    // How many units, and whether there are none.
    std::size_t length() const noexcept { return text_.size(); }
    std::size_t size() const noexcept { return text_.size(); }
    bool isNull() const noexcept { return text_.empty(); }
    bool empty() const noexcept { return text_.empty(); }

    // The units, a zero behind them; the index is not checked.
    const wchar_t* data() const noexcept { return text_.c_str(); }
    const wchar_t* c_str() const noexcept { return text_.c_str(); }
    const wchar_t* begin() const noexcept { return text_.data(); }
    const wchar_t* end() const noexcept { return text_.data() + text_.size(); }
    wchar_t operator[](std::size_t index) const noexcept { return text_[index]; }
    wchar_t& operator[](std::size_t index) noexcept { return text_[index]; }

    // The standard library's view of the same text.
    operator std::wstring_view() const noexcept { return text_; }
    std::wstring_view view() const noexcept { return text_; }
    const std::wstring& str() const noexcept { return text_; }
    std::wstring& str() noexcept { return text_; }

    // Where a text or a unit stands, npos when it does not: the first from `from` on, the last that begins at
    // `from` or before.
    std::size_t find(ql::TextView text, std::size_t from = 0) const noexcept {
        return text_.find(text, from);
    }
    std::size_t find(wchar_t unit, std::size_t from = 0) const noexcept { return text_.find(unit, from); }
    std::size_t rfind(ql::TextView text, std::size_t from = npos) const noexcept {
        return text_.rfind(text, from);
    }
    std::size_t rfind(wchar_t unit, std::size_t from = npos) const noexcept {
        return text_.rfind(unit, from);
    }
    bool starts_with(ql::TextView text) const noexcept { return text_.starts_with(text); }
    bool ends_with(ql::TextView text) const noexcept { return text_.ends_with(text); }
    // Up to `count` units from `from` on; empty when that is past the end.
    RWWString substr(std::size_t from, std::size_t count = npos) const {
        return text_.substr(std::min(from, size()), count);
    }

    // Each adds at the end, but for prepend, and answers the string. The text may be a part of the string.
    RWWString& append(ql::TextView text) {
        text_.append(text);
        return *this;
    }
    RWWString& append(wchar_t unit) {
        text_.push_back(unit);
        return *this;
    }
    RWWString& prepend(ql::TextView text) {
        text_.insert(0, text);
        return *this;
    }
    RWWString& operator+=(ql::TextView text) { return append(text); }
    RWWString& operator+=(wchar_t unit) { return append(unit); }
    void resize(std::size_t length) { text_.resize(length); }  // new units are zero
    void clear() noexcept { text_.clear(); }                   // to the empty text

    // Comparison is by code unit.
    friend bool operator==(const RWWString& a, const RWWString& b) noexcept { return a.text_ == b.text_; }
    friend bool operator==(const RWWString& a, const std::wstring& b) noexcept { return a.text_ == b; }
    friend bool operator==(const RWWString& a, std::wstring_view b) noexcept { return a.text_ == b; }
    friend bool operator==(const RWWString& a, const wchar_t* b) noexcept { return a.text_ == ql::TextOf(b); }
    friend auto operator<=>(const RWWString& a, const RWWString& b) noexcept { return a.text_ <=> b.text_; }
    friend auto operator<=>(const RWWString& a, const std::wstring& b) noexcept { return a.text_ <=> b; }
    friend auto operator<=>(const RWWString& a, std::wstring_view b) noexcept { return a.view() <=> b; }
    friend auto operator<=>(const RWWString& a, const wchar_t* b) noexcept {
        return a.view() <=> ql::TextOf(b);
    }

    friend RWWString operator+(RWWString a, ql::TextView b) { return std::move(a.append(b)); }
    friend RWWString operator+(RWWString a, wchar_t b) { return std::move(a.append(b)); }

    template <class Traits>
    friend std::basic_ostream<wchar_t, Traits>& operator<<(std::basic_ostream<wchar_t, Traits>& out,
                                                           const RWWString& text) {
        return out << std::basic_string_view<wchar_t, Traits>(text.begin(), text.size());
    }

  private:
    std::wstring text_;
};

// That of std::wstring_view, for the same text.
template <>
struct std::hash<RWWString> {
    std::size_t operator()(const RWWString& text) const noexcept {
        return std::hash<std::wstring_view>()(text);
    }
};
