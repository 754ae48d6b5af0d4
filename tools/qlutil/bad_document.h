#pragma once

#include <string>
#include <string_view>

// One line for a JSON document that does not parse: file, line, column, what was expected.
std::wstring DescribeBadDocument(std::wstring_view file, std::wstring_view text);
