// Holds the scanner against a plain model of its rules. The first line of the input declares the names, the
// others are scanned one after the other.
#include <map>
#include <optional>
#include <sstream>
#include <utility>

#include "cmdline/command_switches.h"
#include "tests/fuzz/fuzz.h"
#include "text/blanks.h"
#include "text/characters.h"

namespace {

// A name of the kind that its end says: "x=" and "x?" have values, "x!" matches nothing.
SwitchKind KindOf(const std::wstring& name) {
    if (name.ends_with(L'!')) return SWITCH_NONE;
    return name.ends_with(L'=') || name.ends_with(L'?') ? SWITCH_VALUE : SWITCH_FLAG;
}

bool IsOneOf(const wchar_t* units, const std::wstring& text, std::size_t at) {
    return at < text.size() && std::wstring_view(units).find(text[at]) != std::wstring_view::npos;
}

constexpr wchar_t kPrefixes[] = L"/-";

std::wstring ValueOf(std::wstring value) {
    if (value.size() > 1 && IsOneOf(L"\"'", value, 0)) value.erase(0, 1);
    if (IsOneOf(L"\"'", value, value.size() - 1)) value.pop_back();
    return std::wstring(ql::WithoutBlanks(value));
}

// Goes over a line a unit at a time and tries every declared name on every word.
struct Model {
    void Scan(const std::wstring& line) {
        bool isQuoted = false, isLeading = !IsOneOf(kPrefixes, line, 0);
        std::wstring part;
        ignored.clear();
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] == L'"') {
                isQuoted = !isQuoted;
            } else if (line[i] != L' ' || isQuoted || (isLeading && !IsOneOf(kPrefixes, line, i + 1))) {
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
        const std::wstring token = part.substr(IsOneOf(kPrefixes, part, 0) ? 1 : 0);
        for (auto& [name, found] : switches) {
            const SwitchKind kind = KindOf(name);
            if (token.empty() || kind == SWITCH_NONE || !ql::StartsWithIgnoringCase(token, name)) continue;
            if (!found) found.emplace();
            const std::size_t value = token.find(L'=') + 1;
            if (kind == SWITCH_VALUE && value > 0) found = ValueOf(token.substr(value));
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
        for (const auto& [name, found] : switches) {
            const wchar_t* const value = scanner.GetSwitchValue(name.c_str());
            Expect(scanner.IsSwitchSet(name.c_str()) == (found && KindOf(name) == SWITCH_FLAG));
            Expect((value != nullptr) == (found && KindOf(name) == SWITCH_VALUE));
            Expect(!value || value == *found);
        }
    }

    std::map<std::wstring, std::optional<std::wstring>> switches;  // by name: the value of what was found
    std::wstring leadingText, ignored;
};

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
        const std::wstring bare(ql::WithoutBlanks(name));
        switches.DeclareSwitch(name.c_str(), KindOf(bare));
        model.switches.try_emplace(bare);
    }
    while (std::getline(lines, line)) {
        switches.Scan(line.c_str());
        model.Scan(std::wstring(ql::WithoutBlanks(line)));
        model.Compare(switches);
    }
}
