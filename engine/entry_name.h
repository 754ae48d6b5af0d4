#pragma once

#include <string>
#include <string_view>

namespace ql::zip {

// Whether a file of this name, put under a folder, stays under it and is the plain file that its name says:
// no way up, no root, drive, share or stream, no device, no trailing dot or blank, no character that names
// cannot have. Slashes and backslashes separate; one slash at the end marks a folder.
bool IsSafeEntryName(std::string_view name);

template <class Character>
constexpr bool IsSeparator(Character c) {
    return c == '/' || c == '\\';
}

// The name with slashes as its only separators.
std::string WithSlashes(std::string_view name);

// What stands after the last separator; a separator at the end does not count.
std::string_view LastPart(std::string_view name);

// Whether the file systems of old could not have given a file that name (eight characters, a dot, three).
bool IsLongName(std::string_view fileName);

}  // namespace ql::zip
