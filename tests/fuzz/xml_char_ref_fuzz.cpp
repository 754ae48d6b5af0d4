// Holds the character references of both widths against each other and against a plain reading of the same
// text.
#include "tests/fuzz/fuzz.h"
#include "text/xml_char_ref.h"

namespace {

struct Reference {
    std::size_t length = 0;
    std::uint32_t value = 0;
};

// The reference that starts at `at`; none has no length.
Reference ReferenceAt(const std::string& text, std::size_t at) {
    if (text.compare(at, 2, "&#") != 0) return {};
    const bool isHex = at + 2 < text.size() && (text[at + 2] == 'x' || text[at + 2] == 'X');
    const std::uint32_t base = isHex ? 16 : 10;
    const std::size_t digits = at + (isHex ? 3 : 2);
    const std::size_t end = text.find_first_not_of(isHex ? "0123456789abcdefABCDEF" : "0123456789", digits);
    if (end == std::string::npos || text[end] != ';') return {};
    Reference reference{end + 1 - at};
    for (std::size_t i = digits; i < end; ++i)
        reference.value =
            reference.value * base + static_cast<std::uint32_t>(std::stoul(text.substr(i, 1), nullptr, 16));
    return reference;
}

}  // namespace

FUZZER(XmlCharRef, "", "&#", "x", "X", ";", "41", "4294967295", "aF", "g") {
    const std::string text(input.begin(), std::ranges::find(input, std::uint8_t{0}));
    const std::wstring wide(text.begin(), text.end());
    for (std::size_t at = 0; at <= text.size(); ++at) {
        const char* narrowCursor = text.c_str() + at;
        const wchar_t* wideCursor = wide.c_str() + at;
        unsigned long narrowValue = 0, wideValue = 0;
        const auto [length, value] = ReferenceAt(text, at);
        Expect(IsXmlCharEntityRefA(&narrowCursor, &narrowValue) == (length != 0));
        Expect(IsXmlCharEntityRefW(&wideCursor, &wideValue) == (length != 0));
        Expect(narrowCursor == text.c_str() + at + length && wideCursor == wide.c_str() + at + length);
        Expect(narrowValue == value && wideValue == value);
    }
    const int count = AnsiWithEntitiesCharLength(text.c_str());
    Expect(count >= 0 && static_cast<std::size_t>(count) <= text.size() && (count == 0) == text.empty());
}
