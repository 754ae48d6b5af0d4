#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "platform/export.h"
#include "rw/wide_string.h"

namespace JSON {

// Where and how a document is wrong, for a message such as "line 3, column 17: expected , or }, found [".
struct Fault {
    std::size_t line;         // from 1; CR, LF and CR LF each end a line
    std::size_t column;       // from 1, in UTF-16 units
    const wchar_t* expected;  // such as "a value or ]"; never null, lives for ever
    RWWString found;          // such as "," or "the end of the text"; control and non-ASCII units as "U+FEFF"
};

// The first fault of a document; nothing exactly when JSON::Parse succeeds on it. "More memory" is expected
// where memory is too short to tell. Takes the time and memory of JSON::Parse.
QL_API std::optional<Fault> Diagnose(std::wstring_view text) noexcept;

}  // namespace JSON
