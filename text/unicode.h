#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Characters as UTF-16 and UTF-8 write them. Everything here is compiled into who includes it; what makes a
// string throws std::bad_alloc when there is no memory for it.
namespace ql {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;  // stands for what is none
inline constexpr char32_t kFirstSupplementary = 0x10000;   // the first that takes two units
inline constexpr char32_t kLastCharacter = 0x10FFFF;       // of Unicode

// The first half of a pair of units, its second half, and either.
constexpr bool IsHighSurrogate(char32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr bool IsSurrogate(char32_t unit) noexcept {
    return IsHighSurrogate(unit) || IsLowSurrogate(unit);
}

// The first character of a text that is not empty, which loses it; a surrogate without its partner is itself.
constexpr char32_t TakeCharacter(std::wstring_view& text) noexcept {
    const auto unit = static_cast<char32_t>(text[0]);
    const bool isPair = IsHighSurrogate(unit) && text.size() > 1 && IsLowSurrogate(text[1]);
    const char32_t character =
        isPair ? kFirstSupplementary + ((unit & 0x3FF) << 10) + (static_cast<char32_t>(text[1]) & 0x3FF)
               : unit;
    text.remove_prefix(isPair ? 2 : 1);
    return character;
}

// One unit, or two from kFirstSupplementary on; the character is at most kLastCharacter.
inline void AppendUtf16(std::wstring& text, char32_t character) {
    if (character < kFirstSupplementary) {
        text += static_cast<wchar_t>(character);
        return;
    }
    const char32_t offset = character - kFirstSupplementary;
    text += static_cast<wchar_t>(0xD800 + (offset >> 10));
    text += static_cast<wchar_t>(0xDC00 + (offset & 0x3FF));
}

inline constexpr std::size_t kMostUtf8Bytes = 4;  // of one character

// Writes at most that many bytes; answers where they end. A surrogate takes three.
constexpr char* PutUtf8(char* out, char32_t character) noexcept {
    if (character < 0x80) {
        *out++ = static_cast<char>(character);
        return out;
    }
    const int tails = character < 0x800 ? 1 : character < kFirstSupplementary ? 2 : 3;
    const unsigned lead = 0xFF00u >> (tails + 1) & 0xFFu;  // a one for each byte of the character
    *out++ = static_cast<char>(lead | character >> 6 * tails);
    for (int shift = 6 * (tails - 1); shift >= 0; shift -= 6)
        *out++ = static_cast<char>(0x80u | (character >> shift & 0x3F));
    return out;
}

// A character, and how many bytes it takes.
struct Utf8Character {
    char32_t character;  // the first byte where none is well formed
    std::size_t bytes;   // 0 where none is
};

// The first character of bytes that are not empty. None is well formed where they begin none in its shortest
// form, or a surrogate.
constexpr Utf8Character FirstOfUtf8(std::string_view bytes) noexcept {
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, kFirstSupplementary};
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return {lead, 0};
    char32_t character = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto tail = static_cast<unsigned char>(bytes[i]);
        if ((tail & 0xC0) != 0x80) return {lead, 0};
        character = character << 6 | (tail & 0x3F);
    }
    const bool isWellFormed =
        character >= kSmallest[length] && character <= kLastCharacter && !IsSurrogate(character);
    return {isWellFormed ? character : lead, isWellFormed ? length : 0};
}

// A surrogate without its partner becomes U+FFFD.
inline std::string ToUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const char32_t character = TakeCharacter(text);
        char buffer[kMostUtf8Bytes];
        bytes.append(buffer, PutUtf8(buffer, IsSurrogate(character) ? kReplacementCharacter : character));
    }
    return bytes;
}

// Nothing where the bytes are not well formed. A byte-order mark stays a character.
inline std::optional<std::wstring> FromUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Utf8Character next = FirstOfUtf8(bytes);
        if (next.bytes == 0) return std::nullopt;
        AppendUtf16(text, next.character);
        bytes.remove_prefix(next.bytes);
    }
    return text;
}

// Whether there is a surrogate without its partner, which UTF-8 has no form for.
constexpr bool HasLoneSurrogate(std::wstring_view text) noexcept {
    while (!text.empty()) {
        if (IsSurrogate(TakeCharacter(text))) return true;
    }
    return false;
}

}  // namespace ql
