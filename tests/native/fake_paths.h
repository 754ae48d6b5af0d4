#pragma once

#include <string>
#include <string_view>

namespace fake {

// Between the paths of the sources, where drive Z: is the real file system, and those of the C library. A
// path without a drive is taken as it stands but for its backslashes.
std::string ToNativePath(std::wstring_view path);
std::wstring ToWindowsPath(const std::string& path);

std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);

}  // namespace fake
