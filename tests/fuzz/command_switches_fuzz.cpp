// Holds the scanner against a plain model of its rules, which goes over the line a unit at a time and tries
// every declared name on every token. The first line of the input declares the names, the others are scanned
// one after the other.
#include <map>
#include <sstream>
#include <utility>
#include <vector>

#include "cmdline/command_switches.h"
#include "tests/fuzz/fuzz.h"
#include "text/characters.h"

namespace {

std::vector<std::wstring> Split(const std::wstring& text, wchar_t separator) {
    std::vector<std::wstring> parts;
    std::wistringstream units(text + separator);
    for (std::wstring part; std::getline(units, part, separator);) parts.push_back(part);
    return parts;
}

std::wstring Trimmed(const std::wstring& text) {
    const std::size_t first = text.find_first_not_of(L' ');
    return first == std::wstring::npos ? L"" : text.substr(first, text.find_last_not_of(L' ') + 1 - first);
}

bool Begins(std::wstring text, std::wstring start) {
    ql::MakeUpper(text);
    ql::MakeUpper(start);
    return text.starts_with(start);
}

bool IsPrefix(const std::wstring& text, std::size_t at) {
    return at < text.size() && (text[at] == L'/' || text[at] == L'-');
}

bool IsQuote(wchar_t unit) {
    return unit == L'"' || unit == L'\'';
}

struct Switch {
    SwitchKind kind;
    bool isFound;
    std::wstring value;
};

struct Model {
    std::map<std::wstring, Switch> switches;
    std::wstring leadingText;

    void Scan(const std::wstring& untrimmed) {
        const std::wstring line = Trimmed(untrimmed);
        bool isQuoted = false, isLeading = !IsPrefix(line, 0);
        std::wstring part;
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] == L'"') {
                isQuoted = !isQuoted;
            } else if (line[i] != L' ' || isQuoted || (isLeading && !IsPrefix(line, i + 1))) {
                part += line[i];
            } else {
                Take(std::exchange(part, L""), std::exchange(isLeading, false));
            }
        }
        Take(part, isLeading);
    }

    void Take(const std::wstring& part, bool isLeading) {
        if (isLeading && !part.empty()) leadingText = part;
        const std::wstring token = part.substr(IsPrefix(part, 0) ? 1 : 0);
        if (isLeading || token.empty()) return;
        for (auto& [name, known] : switches) {
            if (known.kind == SWITCH_NONE || !Begins(token, name)) continue;
            known.isFound = true;
            if (known.kind == SWITCH_VALUE) TakeValue(known.value, token);
            return;
        }
    }

    static void TakeValue(std::wstring& value, const std::wstring& token) {
        std::size_t start = token.find(L'=') + 1, end = token.size();
        if (start == 0) return;
        if (start + 1 < end && IsQuote(token[start])) ++start;
        if (IsQuote(token[end - 1])) --end;
        value = start < end ? Trimmed(token.substr(start, end - start)) : L"";
    }
};

void ExpectSame(const CCommandSwitches& switches, const Model& model) {
    Expect(switches.GetLeadingText() == model.leadingText);
    Expect(switches.HasLeadingText() == !model.leadingText.empty());
    for (const auto& [name, known] : model.switches) {
        const CCommandSwitch* const found = switches.FindSwitch(name.c_str());
        Expect((found != nullptr) == known.isFound);
        Expect(!found || (found->GetName() == name.c_str() && found->GetKind() == known.kind));
        Expect(switches.IsSwitchSet(name.c_str()) == (known.isFound && known.kind == SWITCH_FLAG));
        const wchar_t* const value = switches.GetSwitchValue(name.c_str());
        Expect((value != nullptr) == (known.isFound && known.kind == SWITCH_VALUE));
        Expect(!value || value == known.value);
    }
}

SwitchKind KindOf(const std::wstring& name) {
    if (name.ends_with(L'!')) return SWITCH_NONE;
    return name.ends_with(L'=') || name.ends_with(L'?') ? SWITCH_VALUE : SWITCH_FLAG;
}

}  // namespace

void Try(Input input) {
    std::wstring text = TextOf(input);
    std::ranges::replace(text, L'\0', L'\u0130');
    const std::vector<std::wstring> lines = Split(text, L'\n');
    CCommandSwitches switches;
    Model model;
    for (const std::wstring& name : Split(lines.front(), L',')) {
        switches.DeclareSwitch(name.c_str(), KindOf(name));
        model.switches.insert({Trimmed(name), {KindOf(name), false, L""}});
    }
    for (std::size_t i = 1; i < lines.size(); ++i) {
        switches.Scan(lines[i].c_str());
        model.Scan(lines[i]);
        ExpectSame(switches, model);
    }
}
