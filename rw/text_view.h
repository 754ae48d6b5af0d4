#pragma once

#include <concepts>
#include <string_view>

namespace ql {

// The text up to its zero; null is the empty text.
constexpr std::wstring_view TextOf(const wchar_t* text) noexcept {
    return text ? std::wstring_view(text) : std::wstring_view();
}

// The same for bytes.
constexpr std::string_view TextOf(const char* text) noexcept {
    return text ? std::string_view(text) : std::string_view();
}

// Counted texts: RWWString, std::wstring, std::wstring_view and what converts to the last.
template <class Text>
concept CountedText =
    std::convertible_to<const Text&, std::wstring_view> && !std::convertible_to<const Text&, const wchar_t*>;

// A wide text as functions take it: a pointer to units that end with a zero, null being the empty text, or
// any counted text. Belongs to the caller and is read only during the call.
class TextView : public std::wstring_view {
  public:
    // The empty text; one up to its zero; a counted one.
    constexpr TextView() noexcept = default;
    constexpr TextView(const wchar_t* text) noexcept : std::wstring_view(TextOf(text)) {}
    template <CountedText Text>
    constexpr TextView(const Text& text) noexcept : std::wstring_view(text) {}
};

}  // namespace ql
