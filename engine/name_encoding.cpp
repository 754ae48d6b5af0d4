#include "engine/name_encoding.h"

#include <algorithm>
#include <vector>

#include "engine/letter_case.h"
#include "platform/win32.h"

namespace ql::zip {
namespace {

void AppendUtf8(std::string& text, char16_t c) {
    const auto put = [&](unsigned byte) { text += static_cast<char>(byte); };
    if (c < 0x80) return put(c);
    if (c < 0x800) {
        put(0xc0u | c >> 6);
    } else {
        put(0xe0u | c >> 12);
        put(0x80u | (c >> 6 & 0x3f));
    }
    put(0x80u | (c & 0x3f));
}

struct Decoded {
    char32_t c;
    std::size_t length;  // 0 where the bytes are no code point
};

unsigned ByteAt(std::string_view bytes, std::size_t i) {
    return static_cast<unsigned char>(bytes[i]);
}

// Shortest forms only, no surrogates, nothing beyond the last code point.
Decoded DecodeUtf8(std::string_view bytes) {
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const unsigned lead = ByteAt(bytes, 0);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    if (lead < 0xc2 || lead > 0xf4 || bytes.size() < length) return {lead, 0};
    char32_t c = lead & (0x7fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((ByteAt(bytes, i) & 0xc0) != 0x80) return {lead, 0};
        c = c << 6 | (ByteAt(bytes, i) & 0x3f);
    }
    const bool valid = c >= kSmallest[length] && c <= 0x10ffff && (c < 0xd800 || c > 0xdfff);
    return {valid ? c : lead, valid ? length : 0};
}

char32_t TakeCodePoint(std::string_view& utf8) {
    const Decoded next = DecodeUtf8(utf8);
    utf8.remove_prefix(std::max<std::size_t>(next.length, 1));
    return next.c;
}

// As names are compared: the case aside, and the two separators alike.
char32_t TakeFolded(std::string_view& name) {
    const char32_t c = TakeCodePoint(name);
    return c == U'\\' ? U'/' : WithoutCase(c);
}

}  // namespace

bool IsAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool IsUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = DecodeUtf8(bytes).length;
        if (length == 0) return false;
        bytes.remove_prefix(length);
    }
    return true;
}

std::string Utf8FromOem(std::string_view bytes) {
    if (IsAscii(bytes)) return std::string(bytes);
    // No code page makes more units than there are bytes.
    const int size = static_cast<int>(bytes.size());
    std::vector<wchar_t> wide(bytes.size());
    const int length = ::MultiByteToWideChar(CP_OEMCP, 0, bytes.data(), size, wide.data(), size);
    std::string text;
    for (int i = 0; i < length; ++i)
        AppendUtf8(text, static_cast<char16_t>(wide[static_cast<std::size_t>(i)]));
    return text;
}

std::u32string CodePoints(std::string_view utf8) {
    std::u32string points;
    while (!utf8.empty()) points += TakeCodePoint(utf8);
    return points;
}

std::u32string Folded(std::string_view utf8) {
    std::u32string points = CodePoints(utf8);
    std::transform(points.begin(), points.end(), points.begin(), WithoutCase);
    return points;
}

bool IsSameFolded(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        if (TakeFolded(a) != TakeFolded(b)) return false;
    }
    return a.empty() && b.empty();
}

std::uint32_t FoldedHash(std::string_view name) {
    constexpr std::uint32_t kStart = 2166136261, kFactor = 16777619;
    std::uint32_t hash = kStart;
    while (!name.empty()) hash = (hash ^ static_cast<std::uint32_t>(TakeFolded(name))) * kFactor;
    return hash;
}

}  // namespace ql::zip
