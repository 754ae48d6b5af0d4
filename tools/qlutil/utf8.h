#pragma once

#include <optional>
#include <string>
#include <string_view>

// UTF-16 to UTF-8; a surrogate without its partner becomes U+FFFD.
std::string ToUtf8(std::wstring_view text);

// UTF-8 to UTF-16, strictly: nothing where the bytes are not well formed. A byte-order mark stays a
// character.
std::optional<std::wstring> FromUtf8(std::string_view bytes);

bool HasLoneSurrogate(std::wstring_view text);
