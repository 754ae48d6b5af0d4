#pragma once

#include <array>
#include <cstddef>

#include "platform/export.h"
#include "rw/wide_string.h"

// A text that hands out its tokens one after the other. Delimiters are single units; runs of them are one
// separation. A token that begins with a double quote goes on to the next double quote, delimiters included,
// and the quotes are not part of it; a quote cannot be put into such a token, and the end of the text closes
// it too. Other quotes are ordinary units.
//   delimiters blank:   x "a b" y -> x, a b, y        "ab"cd -> ab, cd        "abc -> abc
//
// Kept on purpose: the empty quoted token "" is answered as the empty text, which is also the answer at the
// end; the form that tells them apart is Next(token).
//
// The text's length is taken at construction and the text is meant to stay as it is; of a text that has been
// shortened since, only what is left is read. One object is used by one thread at a time. When memory ends,
// an object that was being made has no text, assigning and NewDelims change nothing, and Next answers the
// empty text, or false, and stays where it is.
class QL_API TokenString : public RWWString {
  public:
    // Both texts are copied.
    TokenString(ql::TextView text, ql::TextView delimiters) noexcept;

    // A copy goes on from the same place.
    TokenString(const TokenString& other) noexcept;
    TokenString& operator=(const TokenString& other) noexcept;
    virtual ~TokenString() = default;

    RWWString Next();  // the empty text at the end, and ever after
    // The same into a text that the caller keeps, whose memory is used again; not the text itself. Whether
    // there was a token, which tells an empty one from the end.
    bool Next(RWWString& token);
    // From here on; the position stays, before the delimiter that ended the last token.
    void NewDelims(ql::TextView delimiters);
    void Init() noexcept { position_ = 0; }  // back to the first token

  private:
    std::size_t End() const noexcept;
    bool IsDelim(wchar_t unit) const noexcept;

    std::size_t position_ = 0;
    std::size_t textLength_;
    std::array<bool, 128> asciiDelimiters_{};  // by their code: they are asked for most
    RWWString otherDelimiters_;
};
