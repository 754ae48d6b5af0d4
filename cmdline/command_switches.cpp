#include "cmdline/command_switches.h"

#include "text/blanks.h"
#include "text/characters.h"

namespace {

constexpr wchar_t kBlank = L' ';
constexpr wchar_t kQuote = L'"';
constexpr auto kNone = std::wstring_view::npos;

constexpr bool IsPrefix(wchar_t unit) {
    return unit == L'/' || unit == L'-';
}

constexpr bool IsValueQuote(wchar_t unit) {
    return unit == L'"' || unit == L'\'';
}

std::wstring_view ValueIn(std::wstring_view token, std::size_t equals) {
    std::wstring_view value = token.substr(equals + 1);
    if (!value.empty() && IsValueQuote(value.front())) value.remove_prefix(1);
    if (!value.empty() && IsValueQuote(value.back())) value.remove_suffix(1);
    return ql::WithoutBlanks(value);
}

bool EndsLeadingText(std::wstring_view line, std::size_t index) {
    return line[index] == kBlank && index + 1 < line.size() && IsPrefix(line[index + 1]);
}

}  // namespace

CCommandSwitch::CCommandSwitch(std::wstring_view name, SwitchKind kind)
    : kind_(kind), name_(ql::WithoutBlanks(name)) {}

bool CCommandSwitch::Matches(std::wstring_view token) {
    if (!token.empty() && IsPrefix(token.front())) token.remove_prefix(1);
    if (token.empty() || kind_ == SWITCH_NONE) return false;
    if (!ql::StartsWithIgnoringCase(token, name_)) return false;
    if (kind_ == SWITCH_FLAG) {
        present_ = true;
    } else if (const std::size_t equals = token.find(L'='); equals != kNone) {
        value_.assign(ValueIn(token, equals));
    }
    return true;
}

void CCommandSwitches::DeclareSwitch(const wchar_t* name, SwitchKind kind) {
    const CCommandSwitch declared(name ? name : L"", kind);
    declared_.try_emplace(declared.GetName().str(), Declared{declared});
}

void CCommandSwitches::Scan(const wchar_t* commandLine) {
    if (!commandLine) return;
    ignored_.ClearEntries();
    const std::wstring_view line = ql::WithoutBlanks(commandLine);
    std::wstring token;
    bool quoted = false;
    for (std::size_t i = TakeLeadingText(line); i < line.size(); ++i) {
        if (line[i] == kQuote) {
            quoted = !quoted;
        } else if (line[i] == kBlank && !quoted) {
            Match(token);
            token.clear();
        } else {
            token += line[i];
        }
    }
    Match(token);
}

// Answers where the switches begin.
std::size_t CCommandSwitches::TakeLeadingText(std::wstring_view line) {
    if (line.empty() || IsPrefix(line.front())) return 0;
    std::wstring text;
    bool quoted = false;
    std::size_t i = 0;
    for (; i < line.size() && (quoted || !EndsLeadingText(line, i)); ++i) {
        if (line[i] == kQuote) {
            quoted = !quoted;
        } else {
            text += line[i];
        }
    }
    if (!text.empty()) leadingText_ = std::move(text);
    return i;
}

void CCommandSwitches::Match(std::wstring_view token) {
    if (token.empty()) return;
    for (auto& [name, declared] : declared_) {
        if (!declared.commandSwitch.Matches(token)) continue;
        declared.found = true;
        return;
    }
    ignored_.AppendString(RWWString(token));
}

const CCommandSwitch* CCommandSwitches::FindSwitch(const wchar_t* name) const {
    if (!name) return nullptr;
    const auto known = declared_.find(std::wstring_view(name));
    return known != declared_.end() && known->second.found ? &known->second.commandSwitch : nullptr;
}

bool CCommandSwitches::IsSwitchSet(const wchar_t* name) const {
    const CCommandSwitch* const found = FindSwitch(name);
    return found && found->GetKind() == SWITCH_FLAG && found->IsPresent();
}

const wchar_t* CCommandSwitches::GetSwitchValue(const wchar_t* name) const {
    const CCommandSwitch* const found = FindSwitch(name);
    return found && found->GetKind() == SWITCH_VALUE ? found->GetValue().data() : nullptr;
}
