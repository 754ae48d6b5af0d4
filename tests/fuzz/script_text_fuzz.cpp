// Script names must come back, and escaped text must hold nothing that ends the string or the markup it
// stands in.
#include <string_view>

#include "tests/fuzz/fuzz.h"
#include "text/script_text.h"

namespace {

bool IsIdentifierUnit(wchar_t unit) {
    return (unit >= L'0' && unit <= L'9') || (unit >= L'A' && unit <= L'Z') ||
           (unit >= L'a' && unit <= L'z') || unit == L'$' || unit == L' ';
}

void CheckNames(const std::wstring& name) {
    const RWWString identifier = QLToJSVarName(name.c_str(), nullptr);
    for (const wchar_t unit : identifier.view()) Expect(IsIdentifierUnit(unit));
    Expect(JSToQLVarName(identifier.data()) == name.c_str());
    // Any text can be read, and nothing read is longer than what was written.
    Expect(JSToQLVarName(name.c_str()).length() <= name.size());
}

bool Holds(const RWWString& text, std::wstring_view units) {
    return text.view().find_first_of(units) != std::wstring_view::npos;
}

void CheckEscapes(const std::wstring& text) {
    const RWWString script = EscapeIllegalChars(text, L"N", L"R", L"A", false, L"Q");
    Expect(script.view().find(L"</script>") == std::wstring_view::npos);
    Expect(!Holds(script, L"\n'"));
    const RWWString markup = EscapeIllegalChars(text, L"N", L"R", L"A", true, L"Q");
    Expect(!Holds(markup, L"\n'\"<>\x2028"));
    const RWWString bare = EscapeIllegalChars(text, L"", L"", L"", true, L"");
    Expect(bare.length() <= 6 * text.size());
}

}  // namespace

FUZZER(ScriptText, "", "$", "u", "12", "aF", "\n", "\r", "\\", "'", "</script>", "<") {
    const std::wstring text = TextOf(input);
    CheckNames(text);
    CheckEscapes(text);
}
