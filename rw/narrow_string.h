#pragma once

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "rw/text_view.h"

// The narrow text of the interfaces: a counted string of bytes, in the ANSI code page unless a function says
// otherwise; it may hold zero bytes. A null pointer is the empty text. A value type on std::string, with the
// thread rules of RWWString.
class RWCString {
  public:
    RWCString() noexcept = default;  // the empty text

    // A text up to its zero, or of so many bytes; a copy of a counted text.
    RWCString(const char* text) : text_(ql::TextOf(text)) {}
    RWCString(const char* text, std::size_t count) : text_(text ? text : "", text ? count : 0) {}
    RWCString(std::string text) noexcept : text_(std::move(text)) {}
    explicit RWCString(std::string_view text) : text_(text) {}

    // How many bytes, and whether there are none.
    std::size_t length() const noexcept { return text_.size(); }
    std::size_t size() const noexcept { return text_.size(); }
    bool isNull() const noexcept { return text_.empty(); }
    bool empty() const noexcept { return text_.empty(); }

    // The bytes, a zero behind them; the index is not checked.
    const char* data() const noexcept { return text_.c_str(); }
    const char* c_str() const noexcept { return text_.c_str(); }
    char operator[](std::size_t index) const noexcept { return text_[index]; }

    // The standard library's view of the same text.
    operator std::string_view() const noexcept { return text_; }
    const std::string& str() const noexcept { return text_; }

    friend bool operator==(const RWCString& a, const RWCString& b) noexcept { return a.text_ == b.text_; }
    friend bool operator==(const RWCString& a, std::string_view b) noexcept { return a.text_ == b; }
    friend bool operator==(const RWCString& a, const char* b) { return a.text_ == ql::TextOf(b); }
    friend std::strong_ordering operator<=>(const RWCString& a, const RWCString& b) noexcept {
        return a.text_ <=> b.text_;
    }

  private:
    std::string text_;
};
