#pragma once

#include <string_view>

// A call of that command as it is typed behind "qlutil"; empty for a command that has none.
std::wstring_view ExampleOf(std::wstring_view command) noexcept;
