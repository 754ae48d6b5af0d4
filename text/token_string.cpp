#include "text/token_string.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"

TokenString::TokenString(ql::TextView text, ql::TextView delimiters) noexcept
    : RWWString(ql::FailureIfThrown({}, [&] { return RWWString(text); })), textLength_(length()) {
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
    RWWString token;
    Next(token);
    return token;
}

bool TokenString::Next(RWWString& token) {
    const wchar_t* const end = data() + End();
    const wchar_t* first = data() + std::min(position_, End());
    while (first != end && IsDelim(*first)) ++first;
    position_ = static_cast<std::size_t>(first - data());
    if (first == end) return token.clear(), false;

    const bool quoted = *first == L'"';
    if (quoted) ++first;
    const wchar_t* last = first;
    while (!quoted && last != end && !IsDelim(*last)) ++last;
    if (quoted) last = std::find(first, end, L'"');
    const bool isTaken = ql::Completes([&] { token.assign(std::wstring_view(first, last)); });
    if (!isTaken) return token.clear(), false;
    position_ = static_cast<std::size_t>(last - data()) + (quoted ? 1 : 0);
    return true;
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
