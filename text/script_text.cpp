#include "text/script_text.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "platform/failure.h"
#include "text/hex_digit.h"

namespace {

constexpr wchar_t kEscape = L'$';
constexpr unsigned kLastShort = 0xFF;
constexpr std::size_t kShortDigits = 2;
constexpr std::size_t kLongDigits = 4;

constexpr bool IsAsciiLetterOrDigit(wchar_t unit) {
    return (unit >= L'0' && unit <= L'9') || (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

constexpr wchar_t HexUnit(unsigned value) {
    return L"0123456789ABCDEF"[value & 0xF];
}

void AppendEscaped(std::wstring& out, wchar_t unit) {
    const unsigned code = static_cast<char16_t>(unit);
    out += kEscape;
    if (unit == kEscape) {
        out += kEscape;
    } else if (code > kLastShort) {
        out.append({L'u', HexUnit(code >> 12), HexUnit(code >> 8), HexUnit(code >> 4), HexUnit(code)});
    } else {
        out.append({code < 0x10 ? L' ' : HexUnit(code >> 4), HexUnit(code)});
    }
}

void AppendIdentifier(std::wstring& out, std::wstring_view name) {
    for (const wchar_t unit : name) {
        if (IsAsciiLetterOrDigit(unit)) {
            out += unit;
        } else {
            AppendEscaped(out, unit);
        }
    }
}

struct Unescaped {
    wchar_t unit;
    std::size_t taken;  // units that the escape is long
};

// Reads `count` digits that begin at `start`.
std::optional<Unescaped> ReadHex(std::wstring_view text, std::size_t start, std::size_t count) {
    if (text.size() < start + count) return std::nullopt;
    unsigned code = 0;
    for (const wchar_t unit : text.substr(start, count)) {
        const unsigned digit = ql::HexDigit(static_cast<char32_t>(unit));
        if (digit == ql::kNoHexDigit) return std::nullopt;
        code = code << 4 | digit;
    }
    return Unescaped{static_cast<wchar_t>(code), start + count};
}

// The escape at the start of a text that begins with kEscape.
std::optional<Unescaped> ReadEscape(std::wstring_view text) {
    if (text.size() < 2) return std::nullopt;
    switch (text[1]) {
        case kEscape: return Unescaped{kEscape, 2};
        case L'u': return ReadHex(text, 2, kLongDigits);
        case L' ': return ReadHex(text, 2, 1);
        default: return ReadHex(text, 1, kShortDigits);
    }
}

// What stands for the special characters; the views are the caller's.
struct Replacements {
    std::wstring_view newline;
    std::wstring_view crLf;
    std::wstring_view apostrophe;
    std::wstring_view quote;
    bool markup;
};

// A piece of text and what it becomes.
struct Rule {
    std::wstring_view from;
    std::wstring_view to;
};

constexpr std::wstring_view kLineSeparator = L"\x2028";

constexpr Rule kScriptRules[] = {{L"</script>", L"</\" + \"script>"}};
constexpr Rule kMarkupRules[] = {
    {L"&", L"&amp;"}, {L"<", L"&lt;"}, {L">", L"&gt;"}, {kLineSeparator, L"\\u2028"}};

template <std::size_t kCount>
std::optional<Rule> FirstRule(const Rule (&rules)[kCount], std::wstring_view text) {
    for (const Rule& rule : rules) {
        if (text.starts_with(rule.from)) return rule;
    }
    return std::nullopt;
}

// The rule for the start of a text that is not empty, none where its first unit stays.
std::optional<Rule> RuleFor(std::wstring_view text, const Replacements& by) {
    const Rule commonRules[] = {{L"\n", by.newline},   {L"\r\n", by.crLf}, {L"\\n", by.newline},
                                {L"\\r\\n", by.crLf},  {L"\\2", L"\\2"},   {L"\\", L"\\\\"},
                                {L"'", by.apostrophe}, {L"\"", by.quote}};
    if (const auto rule = FirstRule(commonRules, text)) return rule;
    return by.markup ? FirstRule(kMarkupRules, text) : FirstRule(kScriptRules, text);
}

// Whether some rule starts with the unit.
constexpr bool IsSpecial(wchar_t unit) {
    switch (unit) {
        case L'\n':
        case L'\r':
        case L'\\':
        case L'\'':
        case L'"':
        case L'&':
        case L'<':
        case L'>': return true;
        default: return unit == kLineSeparator.front();
    }
}

std::wstring Identifier(std::wstring_view name, std::wstring_view prefix) {
    std::wstring identifier;
    AppendIdentifier(identifier, prefix);
    if (!prefix.empty()) identifier += L'_';
    AppendIdentifier(identifier, name);
    return identifier;
}

std::wstring VariableName(std::wstring_view name) {
    std::wstring plain;
    for (std::wstring_view rest = name; !rest.empty();) {
        const auto escape = rest.front() == kEscape ? ReadEscape(rest) : std::nullopt;
        const Unescaped next = escape.value_or(Unescaped{rest.front(), 1});
        plain += next.unit;
        rest.remove_prefix(next.taken);
    }
    return plain;
}

std::wstring Escaped(std::wstring_view rest, const Replacements& by) {
    std::wstring escaped;
    for (;;) {
        const auto special = std::find_if(rest.begin(), rest.end(), IsSpecial);
        escaped.append(rest.begin(), special);
        rest.remove_prefix(static_cast<std::size_t>(special - rest.begin()));
        if (rest.empty()) return escaped;
        const auto rule = RuleFor(rest, by);
        const Rule next = rule.value_or(Rule{rest.substr(0, 1), rest.substr(0, 1)});
        escaped += next.to;
        rest.remove_prefix(next.from.size());
    }
}

}  // namespace

RWWString QLToJSVarName(ql::TextView name, ql::TextView prefix) {
    return ql::FailureIfThrown({}, [&] { return Identifier(name, prefix); });
}

RWWString JSToQLVarName(ql::TextView name) {
    return ql::FailureIfThrown({}, [&] { return VariableName(name); });
}

RWWString EscapeIllegalChars(const RWWString& text, ql::TextView newlineText, ql::TextView crLfText,
                             ql::TextView apostropheText, bool markup, ql::TextView quoteText) {
    const Replacements by = {newlineText, crLfText, apostropheText, quoteText, markup};
    return ql::FailureIfThrown({}, [&] { return Escaped(text, by); });
}
