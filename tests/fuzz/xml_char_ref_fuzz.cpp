// Holds the character references of both widths against each other and against a plain reading of the same
// text.
#include <cstdint>
#include <string>

#include "tests/fuzz/input.h"
#include "text/xml_char_ref.h"

namespace {

using fuzz::Expect;

// Units of the reference that starts at `at`, 0 when none does.
std::size_t ReferenceLength(const std::string& text, std::size_t at) {
    if (text.compare(at, 2, "&#") != 0) return 0;
    const bool hex = at + 2 < text.size() && (text[at + 2] == 'x' || text[at + 2] == 'X');
    const char* digits = hex ? "0123456789abcdefABCDEF" : "0123456789";
    const std::size_t end = text.find_first_not_of(digits, at + (hex ? 3 : 2));
    return end != std::string::npos && text[end] == ';' ? end + 1 - at : 0;
}

// A digit at a time in a wide number, reduced at the end of each step.
unsigned long ValueOf(const std::string& reference) {
    const bool hex = reference[2] == 'x' || reference[2] == 'X';
    std::uint64_t value = 0;
    for (std::size_t i = hex ? 3 : 2; reference[i] != ';'; ++i) {
        const std::string digit(1, reference[i]);
        value = (value * (hex ? 16 : 10) + std::stoul(digit, nullptr, 16)) % (std::uint64_t{1} << 32);
    }
    return static_cast<unsigned long>(value);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string narrow(reinterpret_cast<const char*>(data), size);
    const std::string text = narrow.c_str();  // up to its first zero
    const std::wstring wide(text.begin(), text.end());
    for (std::size_t at = 0; at <= text.size(); ++at) {
        const char* narrowCursor = text.c_str() + at;
        const wchar_t* wideCursor = wide.c_str() + at;
        unsigned long narrowValue = 0, wideValue = 0;
        const std::size_t length = ReferenceLength(text, at);
        Expect(IsXmlCharEntityRefA(&narrowCursor, &narrowValue) == (length != 0));
        Expect(IsXmlCharEntityRefW(&wideCursor, &wideValue) == (length != 0));
        Expect(narrowCursor == text.c_str() + at + length && wideCursor == wide.c_str() + at + length);
        if (length != 0) Expect(narrowValue == ValueOf(text.substr(at, length)) && wideValue == narrowValue);
    }
    const int count = AnsiWithEntitiesCharLength(text.c_str());
    Expect(count >= 0 && static_cast<std::size_t>(count) <= text.size() && (count == 0) == text.empty());
    return 0;
}
