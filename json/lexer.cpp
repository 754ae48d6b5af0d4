#include "json/lexer.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

#include "json/units.h"

namespace JSON {

namespace {

constexpr bool IsBlank(wchar_t unit) {
    return unit == L' ' || unit == L'\t' || unit == L'\n' || unit == L'\r' || unit == L'\f';
}

constexpr int HexValue(wchar_t unit) {
    if (IsDigit(unit)) return unit - L'0';
    if (unit >= L'a' && unit <= L'f') return unit - L'a' + 10;
    if (unit >= L'A' && unit <= L'F') return unit - L'A' + 10;
    return -1;
}

// The exponent part of a number, saturated: no text is long enough to make up for more.
long long Exponent(std::string_view digits) {
    constexpr long long kHuge = std::numeric_limits<long long>::max() / 2;
    const bool negative = digits.starts_with('-');
    if (digits.starts_with('+')) digits.remove_prefix(1);
    long long exponent = negative ? -kHuge : kHuge;
    std::from_chars(digits.data(), digits.data() + digits.size(),
                    exponent);  // leaves it alone when out of range
    return std::clamp(exponent, -kHuge, kHuge);
}

// Whether a number beyond the range of double is so by being too large, not too small.
bool IsTooLarge(std::string_view digits) {
    const std::size_t e = digits.find_first_of("eE");
    const long long exponent = e == std::string_view::npos ? 0 : Exponent(digits.substr(e + 1));
    const std::string_view mantissa = digits.substr(0, e);
    const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
    const auto first = static_cast<long long>(mantissa.find_first_of("123456789"));
    return exponent + point - first > 0;
}

}  // namespace

Token Lexer::Next() {
    while (IsBlank(Peek())) ++next_;
    token_ = next_;
    const wchar_t unit = Peek();
    switch (unit) {
        case L'\0': return Token::End;
        case L'"': return String();
        case L'{': return Punctuation(Token::BeginObject);
        case L'}': return Punctuation(Token::EndObject);
        case L':': return Punctuation(Token::Colon);
        case L',': return Punctuation(Token::Comma);
        case L'[': return Punctuation(Token::BeginArray);
        case L']': return Punctuation(Token::EndArray);
        default: break;
    }
    if (unit == L'-' || IsDigit(unit)) return Number();
    return Word();
}

Token Lexer::Punctuation(Token token) noexcept {
    ++next_;
    return token;
}

// The token that was attempted fails at the present unit.
Token Lexer::Fail(Token attempted, const wchar_t* expected) noexcept {
    attempted_ = attempted;
    fault_ = {static_cast<std::size_t>(next_ - begin_), expected, true};
    return Token::Error;
}

Token Lexer::Word() noexcept {
    while (IsAsciiLetter(Peek())) ++next_;
    const std::wstring_view word(token_, static_cast<std::size_t>(next_ - token_));
    if (word == L"null") return Token::Null;
    flag_ = word == L"true";
    return flag_ || word == L"false" ? Token::Bool : Fail(Token::Error, nullptr);
}

Token Lexer::String() {
    const auto endsRun = [](auto unit) {
        return (unit == Unit{'"'}) | (unit == Unit{'\\'}) | (unit == Unit{0});
    };
    const wchar_t* const first = ++next_;
    next_ = FindSpecial(next_, end_, endsRun);
    const bool escaped = Peek() == L'\\';
    while (Peek() == L'\\') {
        ++next_;
        if (Peek() != L'\0') next_ = FindSpecial(next_ + 1, end_, endsRun);
    }

    const wchar_t* const closing = next_;
    const auto length = static_cast<std::size_t>(closing - first);
    auto* const place = arena_.AllocateArray<wchar_t>(length);
    text_ = {place, length};
    next_ = first;
    if (!escaped) {
        std::copy(first, closing, place);
    } else if (!Decode(closing, place)) {
        return Token::Error;
    }
    next_ = closing;
    if (Peek() != L'"') return Fail(Token::String, L"a closing double quote");
    ++next_;
    return Token::String;
}

// Takes the units up to the closing quote, which take no more room decoded.
bool Lexer::Decode(const wchar_t* closing, wchar_t* out) {
    wchar_t* const first = out;
    while (next_ != closing) {
        if (*next_ != L'\\') {
            *out++ = *next_++;
        } else if (!DecodeEscape(closing, out)) {
            return false;
        }
    }
    text_ = {first, static_cast<std::size_t>(out - first)};
    arena_.Trim(first, text_.size() * sizeof(wchar_t));
    return true;
}

bool Lexer::DecodeEscape(const wchar_t* closing, wchar_t*& out) noexcept {
    ++next_;
    const wchar_t letter = Peek();
    if (letter == L'u') {
        ++next_;
        return DecodeHex(closing, *out++);
    }
    *out = LookUp(kUnitOfLetter, letter);
    if (*out++ == L'\0') {
        Fail(Token::String, L"one of \" \\ / b f n r t u after the backslash");
        return false;
    }
    ++next_;
    return true;
}

bool Lexer::DecodeHex(const wchar_t* closing, wchar_t& unit) noexcept {
    int value = 0;
    for (int i = 0; i < 4; ++i, ++next_) {
        const int digit = next_ != closing ? HexValue(*next_) : -1;
        if (digit < 0) {
            Fail(Token::String, L"a hexadecimal digit");
            return false;
        }
        value = value * 16 + digit;
    }
    unit = static_cast<wchar_t>(value);
    return true;
}

bool Lexer::TakeDigits() noexcept {
    const wchar_t* const first = next_;
    while (IsDigit(Peek())) ++next_;
    return next_ != first;
}

Token Lexer::Number() {
    constexpr const wchar_t* kDigit = L"a digit";
    if (Peek() == L'-') ++next_;
    if (!TakeDigits()) return Fail(Token::Number, kDigit);
    if (Peek() == L'.') {
        ++next_;
        if (!TakeDigits()) return Fail(Token::Number, kDigit);
    }
    if (Peek() == L'e' || Peek() == L'E') {
        ++next_;
        if (Peek() == L'+' || Peek() == L'-') ++next_;
        if (!TakeDigits()) return Fail(Token::Number, kDigit);
    }
    number_ = Convert();
    return Token::Number;
}

double Lexer::Convert() {
    digits_.clear();
    for (const wchar_t* unit = token_; unit != next_; ++unit) digits_.push_back(static_cast<char>(*unit));
    double value = 0;
    const auto result = std::from_chars(digits_.data(), digits_.data() + digits_.size(), value);
    if (result.ec != std::errc::result_out_of_range) return value;
    const double magnitude = IsTooLarge(digits_) ? std::numeric_limits<double>::infinity() : 0.0;
    return digits_.front() == '-' ? -magnitude : magnitude;
}

}  // namespace JSON
