#include "json/diagnosis.h"

#include <algorithm>
#include <cwchar>
#include <iterator>

#include "json/parser.h"
#include "json/units.h"
#include "platform/failure.h"

namespace JSON {

namespace {

struct Position {
    std::size_t line = 1;
    std::size_t column = 1;
};

Position PositionOf(std::wstring_view text, std::size_t offset) {
    Position position;
    for (std::size_t i = 0; i < offset; ++i) {
        const bool endsLine =
            text[i] == L'\n' || (text[i] == L'\r' && !text.substr(i + 1).starts_with(L'\n'));
        position = endsLine ? Position{position.line + 1, 1} : Position{position.line, position.column + 1};
    }
    return position;
}

RWWString NameOfUnit(wchar_t unit) {
    if (unit > L' ' && unit < 127) return {&unit, 1};
    wchar_t name[16];
    std::swprintf(name, std::size(name), L"U+%04X", static_cast<unsigned>(unit));
    return name;
}

// The letters that the text begins with, as far as a message has room for them.
RWWString Word(std::wstring_view text) {
    constexpr std::size_t kMost = 16;
    const std::wstring_view start = text.substr(0, kMost);
    return {start.data(), static_cast<std::size_t>(
                              std::find_if_not(start.begin(), start.end(), IsAsciiLetter) - start.begin())};
}

RWWString Found(std::wstring_view text, bool insideToken) {
    if (text.empty() || text.front() == L'\0') return L"the end of the text";
    const wchar_t unit = text.front();
    if (insideToken) return NameOfUnit(unit);
    if (unit == L'"') return L"a text";
    if (unit == L'-' || IsDigit(unit)) return L"a number";
    return IsAsciiLetter(unit) ? Word(text) : NameOfUnit(unit);
}

}  // namespace

std::optional<Fault> Diagnose(std::wstring_view text) noexcept {
    return ql::FailureIfThrown(Fault{1, 1, L"more memory", {}}, [text]() -> std::optional<Fault> {
        Parser parser(text);
        if (parser.Run()) return std::nullopt;
        const auto [offset, expected, insideToken] = parser.fault();
        const auto [line, column] = PositionOf(text, offset);
        return Fault{line, column, expected, Found(text.substr(offset), insideToken)};
    });
}

}  // namespace JSON
