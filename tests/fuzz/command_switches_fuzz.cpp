// Holds the scanner against a plain model of its rules, which goes over the line a unit at a time and tries
// every declared name on every token. The first line of the input declares the names, the others are scanned
// one after the other.
#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "cmdline/command_switches.h"
#include "tests/fuzz/input.h"
#include "text/characters.h"

namespace {

using fuzz::Expect;

std::vector<std::wstring> Split(const std::wstring& text, wchar_t separator) {
    std::vector<std::wstring> parts(1);
    for (const wchar_t unit : text) {
        if (unit == separator) {
            parts.emplace_back();
        } else {
            parts.back() += unit;
        }
    }
    return parts;
}

std::wstring Trimmed(std::wstring text) {
    while (!text.empty() && text.back() == L' ') text.pop_back();
    while (!text.empty() && text.front() == L' ') text.erase(0, 1);
    return text;
}

bool Begins(const std::wstring& text, const std::wstring& start) {
    std::wstring a = text.substr(0, start.size());
    std::wstring b = start;
    ql::MakeUpper(a);
    ql::MakeUpper(b);
    return a == b;
}

bool IsPrefix(const std::wstring& text, std::size_t at) {
    return at < text.size() && (text[at] == L'/' || text[at] == L'-');
}

bool IsQuote(wchar_t unit) {
    return unit == L'"' || unit == L'\'';
}

class Model {
  public:
    void Declare(const std::wstring& name, SwitchKind kind) {
        const std::wstring trimmed = Trimmed(name);
        if (!declared_.contains(trimmed)) declared_[trimmed] = {kind, false, L""};
    }

    void Scan(const std::wstring& untrimmed) {
        const std::wstring line = Trimmed(untrimmed);
        std::size_t i = 0;
        bool quoted = false;
        std::wstring leading;
        for (; !IsPrefix(line, 0) && i < line.size(); ++i) {
            if (!quoted && line[i] == L' ' && IsPrefix(line, i + 1)) break;
            if (line[i] == L'"') quoted = !quoted;
            if (line[i] != L'"') leading += line[i];
        }
        if (!leading.empty()) leadingText = leading;
        std::wstring token;
        for (quoted = false; i < line.size(); ++i) {
            if (line[i] == L'"') quoted = !quoted;
            if (line[i] == L' ' && !quoted) {
                Match(std::exchange(token, L""));
            } else if (line[i] != L'"') {
                token += line[i];
            }
        }
        Match(token);
    }

    struct Switch {
        SwitchKind kind = SWITCH_NONE;
        bool found = false;
        std::wstring value;
    };
    const std::map<std::wstring, Switch>& switches() const { return declared_; }
    std::wstring leadingText;

  private:
    void Match(const std::wstring& given) {
        const std::wstring token = given.substr(IsPrefix(given, 0) ? 1 : 0);
        if (token.empty()) return;
        for (auto& [name, known] : declared_) {
            if (known.kind == SWITCH_NONE || !Begins(token, name)) continue;
            known.found = true;
            if (known.kind == SWITCH_VALUE) TakeValue(known, token);
            return;
        }
    }

    static void TakeValue(Switch& known, const std::wstring& token) {
        const std::size_t equals = token.find(L'=');
        if (equals == std::wstring::npos) return;
        std::size_t start = equals + 1;
        if (start + 1 < token.size() && IsQuote(token[start])) ++start;
        std::size_t end = token.size();
        if (IsQuote(token[end - 1])) --end;
        known.value = start < end ? Trimmed(token.substr(start, end - start)) : L"";
    }

    std::map<std::wstring, Switch> declared_;
};

void ExpectSame(const CCommandSwitches& switches, const Model& model) {
    Expect(switches.GetLeadingText() == model.leadingText);
    Expect(switches.HasLeadingText() == !model.leadingText.empty());
    for (const auto& [name, known] : model.switches()) {
        const CCommandSwitch* const found = switches.FindSwitch(name.c_str());
        Expect((found != nullptr) == known.found);
        Expect(!found || (found->GetName() == name.c_str() && found->GetKind() == known.kind));
        Expect(switches.IsSwitchSet(name.c_str()) == (known.found && known.kind == SWITCH_FLAG));
        const wchar_t* const value = switches.GetSwitchValue(name.c_str());
        Expect((value != nullptr) == (known.found && known.kind == SWITCH_VALUE));
        Expect(!value || value == known.value);
    }
}

SwitchKind KindOf(const std::wstring& name) {
    if (name.ends_with(L'!')) return SWITCH_NONE;
    return name.ends_with(L'=') || name.ends_with(L'?') ? SWITCH_VALUE : SWITCH_FLAG;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::wstring input = fuzz::TextOf(data, size);
    std::replace(input.begin(), input.end(), L'\0', L'\u0130');
    const std::vector<std::wstring> lines = Split(input, L'\n');
    CCommandSwitches switches;
    Model model;
    for (const std::wstring& name : Split(lines.front(), L',')) {
        switches.DeclareSwitch(name.c_str(), KindOf(name));
        model.Declare(name, KindOf(name));
    }
    for (std::size_t i = 1; i < lines.size(); ++i) {
        switches.Scan(lines[i].c_str());
        model.Scan(lines[i]);
        ExpectSame(switches, model);
    }
    return 0;
}
