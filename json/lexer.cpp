#include "json/lexer.h"

#include "json/units.h"
#include "text/decimal.h"
#include "text/hex_digit.h"

namespace JSON {

namespace {

constexpr bool IsBlank(wchar_t unit) {
    return unit == L' ' || unit == L'\t' || unit == L'\n' || unit == L'\r' || unit == L'\f';
}

}  // namespace

Token Lexer::Next() noexcept {
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

// Takes the units up to the closing quote in one go. Decoded they are no more than in the document, so that
// there is room for whole blocks: as much as is left of the document.
Token Lexer::String() noexcept {
    const auto endsRun = [](auto unit) {
        return (unit == Unit{'"'}) | (unit == Unit{'\\'}) | (unit == Unit{0});
    };
    const wchar_t* const first = texts_;
    ++next_;
    for (;;) {
        next_ = CopyToSpecial(next_, end_, texts_, endsRun);
        if (Peek() != L'\\') break;
        if (!DecodeEscape()) return Token::Error;
    }
    if (Peek() != L'"') return Fail(Token::String, L"a closing double quote");
    ++next_;
    text_ = {first, static_cast<std::size_t>(texts_ - first)};
    return Token::String;
}

bool Lexer::DecodeEscape() noexcept {
    ++next_;
    const wchar_t letter = Peek();
    if (letter == L'u') {
        ++next_;
        return DecodeHex();
    }
    *texts_ = LookUp(kUnitOfLetter, letter);
    if (*texts_++ == L'\0') {
        Fail(Token::String, L"one of \" \\ / b f n r t u after the backslash");
        return false;
    }
    ++next_;
    return true;
}

bool Lexer::DecodeHex() noexcept {
    unsigned value = 0;
    for (int i = 0; i < 4; ++i, ++next_) {
        const unsigned digit = ql::HexDigit(static_cast<char32_t>(Peek()));
        if (digit == ql::kNoHexDigit) {
            Fail(Token::String, L"a hexadecimal digit");
            return false;
        }
        value = value << 4 | digit;
    }
    *texts_++ = static_cast<wchar_t>(value);
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
