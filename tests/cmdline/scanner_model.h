#pragma once

#include <map>
#include <string>
#include <utility>

#include "cmdline/command_switches.h"
#include "text/characters.h"

// A plain model of the scanner's rules, which goes over a line a unit at a time and tries every declared name
// on every word. What it and the scanner made of the same lines is one text each.
class ScannerModel {
  public:
    // A name of the kind that its end says: "x=" and "x?" have values, "x!" matches nothing.
    static SwitchKind KindOf(const std::wstring& name) {
        if (name.ends_with(L'!')) return SWITCH_NONE;
        return name.ends_with(L'=') || name.ends_with(L'?') ? SWITCH_VALUE : SWITCH_FLAG;
    }

    void Declare(const std::wstring& name) { switches_.insert({Trimmed(name), {KindOf(name), false, L""}}); }

    void Scan(const std::wstring& untrimmed) {
        const std::wstring line = Trimmed(untrimmed);
        bool isQuoted = false, isLeading = !IsPrefix(line, 0);
        std::wstring part;
        ignored_.clear();
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

    std::wstring State() const {
        std::wstring state = leadingText_ + L"|" + ignored_;
        for (const auto& [name, known] : switches_)
            state += Shown(name, known.kind, known.isFound, known.kind == SWITCH_VALUE ? known.value : L"");
        return state;
    }

    // The scanner's, in the same form.
    std::wstring StateOf(const CCommandSwitches& scanner) const {
        std::wstring state = scanner.GetLeadingText() + std::wstring(L"|");
        for (unsigned i = 0; i < scanner.GetIgnored().NumEntries(); ++i)
            state += scanner.GetIgnored()(static_cast<int>(i)).str() + L'\n';
        for (const auto& [name, known] : switches_) {
            const CCommandSwitch* const found = scanner.FindSwitch(name.c_str());
            const wchar_t* const value = scanner.GetSwitchValue(name.c_str());
            const bool isTold = value || scanner.IsSwitchSet(name.c_str());
            const SwitchKind kind = found ? found->GetKind() : known.kind;
            state += Shown(found ? found->GetName().str() : name, kind, isTold, value ? value : L"");
        }
        return state;
    }

  private:
    struct Switch {
        SwitchKind kind;
        bool isFound;
        std::wstring value;
    };

    static std::wstring Shown(const std::wstring& name, SwitchKind kind, bool isFound,
                              const std::wstring& value) {
        return isFound ? L'|' + name + static_cast<wchar_t>(L'0' + kind) + value : L"";
    }
    static std::wstring Trimmed(const std::wstring& text) {
        const std::size_t first = text.find_first_not_of(L' ');
        return first == std::wstring::npos ? L""
                                           : text.substr(first, text.find_last_not_of(L' ') + 1 - first);
    }
    static bool Begins(std::wstring text, std::wstring start) {
        ql::MakeUpper(text);
        ql::MakeUpper(start);
        return text.starts_with(start);
    }
    static bool IsPrefix(const std::wstring& text, std::size_t at) {
        return at < text.size() && (text[at] == L'/' || text[at] == L'-');
    }
    static bool IsQuote(wchar_t unit) { return unit == L'"' || unit == L'\''; }

    void Take(const std::wstring& part, bool isLeading) {
        if (isLeading && !part.empty()) leadingText_ = part;
        if (isLeading || part.empty()) return;
        const std::wstring token = part.substr(IsPrefix(part, 0) ? 1 : 0);
        for (auto& [name, known] : switches_) {
            if (token.empty() || known.kind == SWITCH_NONE || !Begins(token, name)) continue;
            known.isFound = true;
            if (known.kind == SWITCH_VALUE) TakeValue(known.value, token);
            return;
        }
        ignored_ += part + L'\n';
    }
    static void TakeValue(std::wstring& value, const std::wstring& token) {
        std::size_t start = token.find(L'=') + 1, end = token.size();
        if (start == 0) return;
        if (start + 1 < end && IsQuote(token[start])) ++start;
        if (IsQuote(token[end - 1])) --end;
        value = start < end ? Trimmed(token.substr(start, end - start)) : L"";
    }

    std::map<std::wstring, Switch> switches_;
    std::wstring leadingText_, ignored_;
};
