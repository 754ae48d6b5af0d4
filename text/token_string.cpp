#include "text/token_string.h"

#include <algorithm>

TokenString::TokenString(RWWString text, RWWString delimiters)
    : RWWString(std::move(text)), textLength_(length()) {
    NewDelims(std::move(delimiters));
}

RWWString TokenString::Next() {
    const std::wstring_view text = view().substr(0, End());
    const auto isDelim = [this](wchar_t unit) { return IsDelim(unit); };
    const auto from = [&](std::size_t index) { return text.begin() + static_cast<std::ptrdiff_t>(index); };

    position_ = std::min(position_, text.size());
    const auto start = std::find_if_not(from(position_), text.end(), isDelim);
    position_ = static_cast<std::size_t>(start - text.begin());
    if (position_ == text.size()) return {};

    const bool quoted = *start == L'"';
    const std::size_t first = position_ + (quoted ? 1 : 0);
    const auto end =
        quoted ? std::find(from(first), text.end(), L'"') : std::find_if(start, text.end(), isDelim);
    const auto last = static_cast<std::size_t>(end - text.begin());
    position_ = quoted ? last + 1 : last;
    return RWWString(text.data() + first, last - first);
}

std::size_t TokenString::End() const noexcept {
    return std::min(textLength_, length());
}

bool TokenString::IsDelim(wchar_t unit) const noexcept {
    const auto code = static_cast<char32_t>(unit);
    if (code < asciiDelimiters_.size()) return asciiDelimiters_[code];
    return delimiters_.view().find(unit) != std::wstring_view::npos;
}

void TokenString::NewDelims(RWWString delimiters) {
    delimiters_ = std::move(delimiters);
    asciiDelimiters_.reset();
    for (const wchar_t unit : delimiters_) {
        const auto code = static_cast<char32_t>(unit);
        if (code < asciiDelimiters_.size()) asciiDelimiters_.set(code);
    }
}
