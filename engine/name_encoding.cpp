#include "engine/name_encoding.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace ql::zip {
namespace {

constexpr char16_t kCp437Upper[] = {
    0x00c7, 0x00fc, 0x00e9, 0x00e2, 0x00e4, 0x00e0, 0x00e5, 0x00e7, 0x00ea, 0x00eb, 0x00e8, 0x00ef, 0x00ee,
    0x00ec, 0x00c4, 0x00c5, 0x00c9, 0x00e6, 0x00c6, 0x00f4, 0x00f6, 0x00f2, 0x00fb, 0x00f9, 0x00ff, 0x00d6,
    0x00dc, 0x00a2, 0x00a3, 0x00a5, 0x20a7, 0x0192, 0x00e1, 0x00ed, 0x00f3, 0x00fa, 0x00f1, 0x00d1, 0x00aa,
    0x00ba, 0x00bf, 0x2310, 0x00ac, 0x00bd, 0x00bc, 0x00a1, 0x00ab, 0x00bb, 0x2591, 0x2592, 0x2593, 0x2502,
    0x2524, 0x2561, 0x2562, 0x2556, 0x2555, 0x2563, 0x2551, 0x2557, 0x255d, 0x255c, 0x255b, 0x2510, 0x2514,
    0x2534, 0x252c, 0x251c, 0x2500, 0x253c, 0x255e, 0x255f, 0x255a, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550,
    0x256c, 0x2567, 0x2568, 0x2564, 0x2565, 0x2559, 0x2558, 0x2552, 0x2553, 0x256b, 0x256a, 0x2518, 0x250c,
    0x2588, 0x2584, 0x258c, 0x2590, 0x2580, 0x03b1, 0x00df, 0x0393, 0x03c0, 0x03a3, 0x03c3, 0x00b5, 0x03c4,
    0x03a6, 0x0398, 0x03a9, 0x03b4, 0x221e, 0x03c6, 0x03b5, 0x2229, 0x2261, 0x00b1, 0x2265, 0x2264, 0x2320,
    0x2321, 0x00f7, 0x2248, 0x00b0, 0x2219, 0x00b7, 0x221a, 0x207f, 0x00b2, 0x25a0, 0x00a0,
};
static_assert(std::size(kCp437Upper) == 128);

// Upper-case letters: every step-th one of the range has its lower case that far on.
struct LetterCase {
    char32_t first, last, step;
    std::int32_t toLower;
};
constexpr LetterCase kLetterCases[] = {
    {U'A', U'Z', 1, 32},  {0xc0, 0xd6, 1, 32},   {0xd8, 0xde, 1, 32},   {0x100, 0x12e, 2, 1},
    {0x132, 0x136, 2, 1}, {0x139, 0x147, 2, 1},  {0x14a, 0x176, 2, 1},  {0x178, 0x178, 1, -121},
    {0x179, 0x17d, 2, 1}, {0x391, 0x3a9, 1, 32}, {0x400, 0x40f, 1, 80}, {0x410, 0x42f, 1, 32},
};

char32_t Lower(char32_t c) {
    for (const LetterCase& row : kLetterCases) {
        if (c >= row.first && c <= row.last && (c - row.first) % row.step == 0)
            return static_cast<char32_t>(static_cast<std::int32_t>(c) + row.toLower);
    }
    return c;
}

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

}  // namespace

bool IsUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = DecodeUtf8(bytes).length;
        if (length == 0) return false;
        bytes.remove_prefix(length);
    }
    return true;
}

std::string Utf8FromCp437(std::string_view bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const unsigned c = ByteAt(bytes, i);
        AppendUtf8(text, c < 0x80 ? static_cast<char16_t>(c) : kCp437Upper[c - 0x80]);
    }
    return text;
}

std::u32string CodePoints(std::string_view utf8) {
    std::u32string points;
    while (!utf8.empty()) {
        const Decoded next = DecodeUtf8(utf8);
        points += next.c;
        utf8.remove_prefix(std::max<std::size_t>(next.length, 1));
    }
    return points;
}

std::u32string Folded(std::string_view utf8) {
    std::u32string points = CodePoints(utf8);
    std::transform(points.begin(), points.end(), points.begin(), Lower);
    return points;
}

}  // namespace ql::zip
