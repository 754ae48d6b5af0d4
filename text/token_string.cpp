#include "text/token_string.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"

TokenString::TokenString(ql::TextView text, ql::TextView delimiters) noexcept {
    ql::Completes([&] { assign(text); });
    textLength_ = length();
    NewDelims(delimiters);
}

TokenString::TokenString(const TokenString& other) noexcept : TokenString(nullptr, nullptr) {
    *this = other;
}

TokenString& TokenString::operator=(const TokenString& other) noexcept {
    ql::Completes([&] {
        RWWString text = other, delimiters = other.otherDelimiters_;
        RWWString::operator=(std::move(text));
        otherDelimiters_ = std::move(delimiters);
        asciiDelimiters_ = other.asciiDelimiters_;
        position_ = other.position_;
        textLength_ = other.textLength_;
    });
    return *this;
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
    return ql::FailureIfThrown({}, [&] {
        RWWString token(text.data() + first, last - first);
        position_ = quoted ? last + 1 : last;
        return token;
    });
}

std::size_t TokenString::End() const noexcept {
    return std::min(textLength_, length());
}

bool TokenString::IsDelim(wchar_t unit) const noexcept {
    const auto code = static_cast<char32_t>(unit);
    return code < asciiDelimiters_.size() ? asciiDelimiters_[code]
                                          : otherDelimiters_.find(unit) != RWWString::npos;
}

void TokenString::NewDelims(ql::TextView delimiters) {
    ql::Completes([&] {
        std::array<bool, 128> ascii{};
        RWWString others;
        for (const wchar_t unit : delimiters) {
            const auto code = static_cast<char32_t>(unit);
            if (code < ascii.size()) ascii[code] = true;
            if (code >= ascii.size()) others.append(unit);
        }
        asciiDelimiters_ = ascii;
        otherDelimiters_ = std::move(others);
    });
}
