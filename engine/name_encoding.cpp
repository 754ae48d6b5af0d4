#include "engine/name_encoding.h"

#include <algorithm>

#include "engine/letter_case.h"
#include "platform/win32.h"
#include "text/unicode.h"

namespace ql::zip {
namespace {

// A byte that belongs to no character stands for itself.
char32_t TakeCodePoint(std::string_view& utf8) {
    const Utf8Character next = FirstOfUtf8(utf8);
    utf8.remove_prefix(std::max<std::size_t>(next.bytes, 1));
    return next.character;
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
        const std::size_t length = FirstOfUtf8(bytes).bytes;
        if (length == 0) return false;
        bytes.remove_prefix(length);
    }
    return true;
}

std::wstring Widen(unsigned codePage, std::string_view bytes) {
    // No code page makes more units than there are bytes.
    std::wstring wide(bytes.size(), L'\0');
    const int size = static_cast<int>(bytes.size());
    const int length = ::MultiByteToWideChar(codePage, 0, bytes.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

std::string Utf8FromOem(std::string_view bytes) {
    return IsAscii(bytes) ? std::string(bytes) : ToUtf8(Widen(CP_OEMCP, bytes));
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
