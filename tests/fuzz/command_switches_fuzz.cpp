// Holds the scanner against a plain model of its rules. The first line of the input declares the names, the
// others are scanned one after the other.
#include <map>
#include <sstream>
#include <utility>

#include "cmdline/command_switches.h"
#include "tests/fuzz/fuzz.h"
#include "text/blanks.h"
#include "text/characters.h"

namespace {

std::wstring Trimmed(std::wstring_view text) {
    return std::wstring(ql::WithoutBlanks(text));
}

bool IsPrefix(const std::wstring& text, std::size_t at) {
    return at < text.size() && (text[at] == L'/' || text[at] == L'-');
}

bool IsQuote(wchar_t unit) {
    return unit == L'"' || unit == L'\'';
}

std::wstring ValueOf(const std::wstring& token, std::size_t start) {
    std::size_t end = token.size();
    if (start + 1 < end && IsQuote(token[start])) ++start;
    if (IsQuote(token[end - 1])) --end;
    return start < end ? Trimmed(token.substr(start, end - start)) : L"";
}

// Goes over a line a unit at a time and tries every declared name on every word.
struct Model {
    struct Switch {
        SwitchKind kind;
        bool isFound = false;
        std::wstring value = L"";
    };

    void Scan(const std::wstring& line) {
        bool isQuoted = false, isLeading = !IsPrefix(line, 0);
        std::wstring part;
        ignored.clear();
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
        if (part.empty()) return;
        if (isLeading) {
            leadingText = part;
            return;
        }
        const std::wstring token = part.substr(IsPrefix(part, 0) ? 1 : 0);
        for (auto& [name, known] : switches) {
            if (token.empty() || known.kind == SWITCH_NONE || !ql::StartsWithIgnoringCase(token, name))
                continue;
            known.isFound = true;
            const std::size_t value = token.find(L'=') + 1;
            if (known.kind == SWITCH_VALUE && value > 0) known.value = ValueOf(token, value);
            return;
        }
        ignored += part + L'~';
    }

    void Compare(const CCommandSwitches& scanner) const {
        RWWString joined;
        scanner.GetIgnored().AppendToString(joined);
        Expect(joined == ignored);
        Expect(scanner.GetLeadingText() == leadingText);
        Expect(scanner.HasLeadingText() == !leadingText.empty());
        for (const auto& [name, known] : switches) {
            const wchar_t* const value = scanner.GetSwitchValue(name.c_str());
            Expect(scanner.IsSwitchSet(name.c_str()) == (known.isFound && known.kind == SWITCH_FLAG));
            Expect((value != nullptr) == (known.isFound && known.kind == SWITCH_VALUE));
            Expect(!value || value == known.value);
        }
    }

    std::map<std::wstring, Switch> switches;
    std::wstring leadingText, ignored;
};

// A name of the kind that its end says: "x=" and "x?" have values, "x!" matches nothing.
SwitchKind KindOf(const std::wstring& name) {
    if (name.ends_with(L'!')) return SWITCH_NONE;
    return name.ends_with(L'=') || name.ends_with(L'?') ? SWITCH_VALUE : SWITCH_FLAG;
}

}  // namespace

FUZZER(CommandSwitches, "na, naw,ni ,na=,of=,v?,n!,\xc9\n", " ", " ", " /", "-", "\"", "'", "=", "na", "naw",
       "NI", "of=", "v?", "x\t", "\xe9", "\n") {
    std::wstring text = TextOf(input), line, name;
    std::ranges::replace(text, L'\0', L'\u0130');
    std::wistringstream lines(text);
    std::getline(lines, line);
    CCommandSwitches switches;
    Model model;
    for (std::wistringstream names(line); std::getline(names, name, L',');) {
        switches.DeclareSwitch(name.c_str(), KindOf(name));
        model.switches.insert({Trimmed(name), {KindOf(name)}});
    }
    while (std::getline(lines, line)) {
        switches.Scan(line.c_str());
        model.Scan(Trimmed(line));
        model.Compare(switches);
    }
}
