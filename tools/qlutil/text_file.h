#pragma once

#include <optional>
#include <string>
#include <string_view>

// The text of a UTF-8 file ("-" is standard input), a byte-order mark included. Nothing, and why, when it
// cannot be read or is not UTF-8.
std::optional<std::wstring> ReadTextFile(std::wstring_view path, std::wstring& why);

// Writes a whole UTF-8 file; a file that stood there is replaced only when the new one is complete. False,
// and why, when that fails.
bool WriteTextFile(std::wstring_view path, std::wstring_view text, std::wstring& why);
bool WriteBinaryFile(std::wstring_view path, std::string_view bytes,
                     std::wstring& why);  // the same for any bytes

// Writes UTF-8 to standard output or standard error, to a console as the text it is.
enum class Stream { kOutput, kError };
bool WriteToStream(Stream stream, std::wstring_view text);
bool IsTerminal(Stream stream);  // no other device is one
