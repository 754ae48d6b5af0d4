#include "tools/qlutil/utf8.h"

#include <cstdint>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

constexpr bool IsHigh(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool IsLow(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// The code point at the index, which moves past it; a lone surrogate comes out as itself.
char32_t TakeCodePoint(std::wstring_view text, std::size_t& index) {
    const char32_t first = text[index++];
    if (!IsHigh(first) || index == text.size() || !IsLow(text[index])) return first;
    return 0x10000 + ((first - 0xD800) << 10) + (static_cast<char32_t>(text[index++]) - 0xDC00);
}

void AppendUtf8(std::string& bytes, char32_t point) {
    const auto tail = [&](int shift) { bytes += static_cast<char>(0x80 | ((point >> shift) & 0x3F)); };
    if (point < 0x80) {
        bytes += static_cast<char>(point);
    } else if (point < 0x800) {
        bytes += static_cast<char>(0xC0 | (point >> 6));
        tail(0);
    } else if (point < 0x10000) {
        bytes += static_cast<char>(0xE0 | (point >> 12));
        tail(6);
        tail(0);
    } else {
        bytes += static_cast<char>(0xF0 | (point >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

void AppendUtf16(std::wstring& text, char32_t point) {
    if (point < 0x10000) {
        text += static_cast<wchar_t>(point);
        return;
    }
    text += static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
    text += static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
}

struct LeadByte {
    std::uint8_t mask;
    std::uint8_t pattern;
    int tailBytes;
    char32_t least;  // a smaller code point has a shorter form
};

constexpr LeadByte kLeadBytes[] = {
    {0x80, 0x00, 0, 0x0},
    {0xE0, 0xC0, 1, 0x80},
    {0xF0, 0xE0, 2, 0x800},
    {0xF8, 0xF0, 3, 0x10000},
};

std::optional<char32_t> TakeUtf8(std::string_view bytes, std::size_t& index) {
    const auto first = static_cast<std::uint8_t>(bytes[index++]);
    for (const LeadByte& lead : kLeadBytes) {
        if ((first & lead.mask) != lead.pattern) continue;
        char32_t point = static_cast<char32_t>(first & ~lead.mask);
        for (int i = 0; i < lead.tailBytes; ++i, ++index) {
            if (index == bytes.size() || (bytes[index] & 0xC0) != 0x80) return std::nullopt;
            point = (point << 6) | static_cast<char32_t>(bytes[index] & 0x3F);
        }
        const bool wellFormed = point >= lead.least && point <= 0x10FFFF && !IsHigh(point) && !IsLow(point);
        return wellFormed ? std::optional(point) : std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const char32_t point = TakeCodePoint(text, i);
        AppendUtf8(bytes, IsHigh(point) || IsLow(point) ? kReplacement : point);
    }
    return bytes;
}

std::optional<std::wstring> FromUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const std::optional<char32_t> point = TakeUtf8(bytes, i);
        if (!point) return std::nullopt;
        AppendUtf16(text, *point);
    }
    return text;
}

bool HasLoneSurrogate(std::wstring_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const char32_t point = TakeCodePoint(text, i);
        if (IsHigh(point) || IsLow(point)) return true;
    }
    return false;
}
