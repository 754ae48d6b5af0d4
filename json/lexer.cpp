#include "json/lexer.h"

#include <algorithm>

#include "json/units.h"
#include "text/decimal.h"
#include "text/hex_digit.h"

namespace JSON {

namespace {

constexpr bool IsBlank(wchar_t unit) {
    return unit == L' ' || unit == L'\t' || unit == L'\n' || unit == L'\r' || unit == L'\f';
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
    next_ = FindUnit(next_, end_, endsRun);
    const bool escaped = Peek() == L'\\';
    while (Peek() == L'\\') {
        ++next_;
        if (Peek() != L'\0') next_ = FindUnit(next_ + 1, end_, endsRun);
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
    const auto isEscape = [](auto unit) { return unit == Unit{'\\'}; };
    for (;;) {
        next_ = CopyToSpecial(next_, closing, out, isEscape);
        if (next_ == closing) break;
        if (!DecodeEscape(closing, out)) return false;
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
    unsigned value = 0;
    for (int i = 0; i < 4; ++i, ++next_) {
        const unsigned digit =
            next_ != closing ? ql::HexDigit(static_cast<char32_t>(*next_)) : ql::kNoHexDigit;
        if (digit == ql::kNoHexDigit) {
            Fail(Token::String, L"a hexadecimal digit");
            return false;
        }
        value = value << 4 | digit;
    }
    unit = static_cast<wchar_t>(value);
    return true;
}

Token Lexer::Number() noexcept {
    const Decimal decimal = ReadDecimal({token_, static_cast<std::size_t>(end_ - token_)});
    next_ = token_ + decimal.length;
    if (!decimal.isValid) return Fail(Token::Number, L"a digit");
    number_ = decimal.value;
    return Token::Number;
}

}  // namespace JSON
