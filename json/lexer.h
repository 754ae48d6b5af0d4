#pragma once

#include <cstddef>
#include <string_view>

#include "json/arena.h"

namespace JSON {

enum class Token {
    String,
    Number,
    BeginObject,
    EndObject,
    Colon,
    Comma,
    BeginArray,
    EndArray,
    Bool,
    Null,
    Error,
    End
};
inline constexpr std::size_t kTokenCount = static_cast<std::size_t>(Token::End) + 1;

// Where a document is wrong.
struct ParseFault {
    std::size_t offset;
    const wchar_t* expected;
    bool insideToken;  // only the unit at the offset is wrong; else the whole token that begins there
};

// Cuts a document into tokens. Texts of string tokens are placed in the arena, one behind the
// other. Constructing can throw std::bad_alloc.
class Lexer {
  public:
    Lexer(std::wstring_view document, Arena& arena)
        : begin_(document.data()),
          end_(begin_ + document.size()),
          next_(begin_),
          token_(begin_),
          texts_(arena.AllocateArray<wchar_t>(document.size())) {}

    Token Next() noexcept;

    // The content of the latest token.
    std::wstring_view text() const noexcept { return text_; }
    double number() const noexcept { return number_; }
    bool flag() const noexcept { return flag_; }

    // Where the latest token begins.
    std::size_t offset() const noexcept { return static_cast<std::size_t>(token_ - begin_); }

    // After Token::Error: the token that was begun well and then went wrong (Error: none), and how.
    Token attempted() const noexcept { return attempted_; }
    const ParseFault& fault() const noexcept { return fault_; }

  private:
    wchar_t Peek() const noexcept { return next_ != end_ ? *next_ : L'\0'; }
    Token Punctuation(Token token) noexcept;
    Token String() noexcept;
    Token Number() noexcept;
    Token Word() noexcept;
    Token Fail(Token attempted, const wchar_t* expected) noexcept;

    bool DecodeEscape() noexcept;
    bool DecodeHex() noexcept;

    const wchar_t* begin_;
    const wchar_t* end_;
    const wchar_t* next_;
    const wchar_t* token_;
    wchar_t* texts_;  // where the next one goes
    std::wstring_view text_;
    double number_ = 0;
    bool flag_ = false;
    Token attempted_ = Token::Error;
    ParseFault fault_{};
};

}  // namespace JSON
