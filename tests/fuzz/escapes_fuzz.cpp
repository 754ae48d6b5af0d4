// Script names must come back, and escaped text must hold nothing that ends the string or the markup it
// stands in. Character references of both widths are held against a plain reading of the same text.
#include <regex>
#include <string_view>

#include "tests/fuzz/fuzz.h"
#include "text/script_text.h"
#include "text/xml_char_ref.h"

namespace {

constexpr auto kNone = std::wstring_view::npos;

void CheckNames(const std::wstring& name) {
    const RWWString identifier = QLToJSVarName(name.c_str(), nullptr);
    constexpr std::wstring_view kUnits = L" $0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    Expect(identifier.view().find_first_not_of(kUnits) == kNone);
    Expect(JSToQLVarName(identifier.data()) == name.c_str());
    // Any text can be read, and nothing read is longer than what was written.
    Expect(JSToQLVarName(name.c_str()).length() <= name.size());
}

void CheckEscapes(const std::wstring& text) {
    const RWWString script = EscapeIllegalChars(text, L"N", L"R", L"A", false, L"Q");
    Expect(script.view().find(L"</script>") == kNone);
    Expect(script.view().find_first_of(L"\n'") == kNone);
    const RWWString markup = EscapeIllegalChars(text, L"N", L"R", L"A", true, L"Q");
    Expect(markup.view().find_first_of(L"\n'\"<>\x2028") == kNone);
    const RWWString bare = EscapeIllegalChars(text, L"", L"", L"", true, L"");
    Expect(bare.length() <= 6 * text.size());
}

// The length of the reference that the text starts with, 0 for none, and its value.
std::pair<std::ptrdiff_t, std::uint32_t> ReferenceAt(const char* text) {
    static const std::regex kReference("&#(?:([0-9]*)|[xX]([0-9a-fA-F]*));");
    std::cmatch found;
    if (!std::regex_search(text, found, kReference, std::regex_constants::match_continuous)) return {};
    std::uint32_t value = 0;
    for (const char digit : found.str(1) + found.str(2))
        value = value * (found[2].matched ? 16u : 10u) +
                static_cast<std::uint32_t>(std::stoul(std::string(1, digit), nullptr, 16));
    return {found.length(), value};
}

void CheckReferences(const std::string& text) {
    const std::wstring wide(text.begin(), text.end());
    for (std::size_t at = 0; at <= text.size(); ++at) {
        const char* narrowCursor = text.c_str() + at;
        const wchar_t* wideCursor = wide.c_str() + at;
        unsigned long narrowValue = 0, wideValue = 0;
        const auto [length, value] = ReferenceAt(narrowCursor);
        Expect(IsXmlCharEntityRefA(&narrowCursor, &narrowValue) == (length != 0));
        Expect(IsXmlCharEntityRefW(&wideCursor, &wideValue) == (length != 0));
        Expect(narrowCursor == text.c_str() + at + length);
        Expect(wideCursor == wide.c_str() + at + length);
        Expect(narrowValue == value);
        Expect(wideValue == value);
    }
    const int count = AnsiWithEntitiesCharLength(text.c_str());
    Expect(count >= 0 && static_cast<std::size_t>(count) <= text.size() && (count == 0) == text.empty());
}

}  // namespace

FUZZER(Escapes, "", "$", "u", "12", "aF", "\n", "\r", "\\", "'", "</script>", "<", "&#", "x", "X", ";",
       "4294967295") {
    const std::wstring text = TextOf(input);
    CheckNames(text);
    CheckEscapes(text);
    CheckReferences(std::string(input.begin(), std::ranges::find(input, std::uint8_t{0})));
}
