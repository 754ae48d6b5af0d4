#include "names/cmd_line.h"

#include <utility>

#include "platform/failure.h"
#include "text/blanks.h"
#include "text/characters.h"

namespace {

using Text = std::wstring_view;

constexpr std::size_t kNone = Text::npos;
constexpr wchar_t kQuote = L'"';

// Where the name ends and the switches begin; the text's length when it has none.
std::size_t SwitchesBegin(Text text) {
    if (text.starts_with(kQuote)) {
        const std::size_t closing = text.find(kQuote, 1);
        if (closing != kNone) return closing + 1;
    }
    const std::size_t slash = text.find(L'/');
    const bool startsWord = slash == 0 || (slash != kNone && text[slash - 1] == L' ');
    return startsWord ? slash : text.size();
}

}  // namespace

template <class Change>
void QLCmdLine::TryTo(Change change) noexcept {
    if (!ql::Completes(change)) QLCmdLine::Reset();
}

QLCmdLine::QLCmdLine(const wchar_t* text) {
    SetCmdLine(text);
}

QLCmdLine::QLCmdLine(ql::TextView path, ql::TextView name, ql::TextView ext, ql::TextView switches) {
    TryTo([&] {
        SetParts(path, name, ext);
        switches_ = ql::WithoutBlanks(switches);
    });
}

QLCmdLine::QLCmdLine(const QLCmdLine& other) noexcept : QLFileName(other) {
    const bool hasLostItsName = QLFileName::IsNull() != other.QLFileName::IsNull();
    if (!hasLostItsName) TryTo([&] { switches_ = other.switches_; });
}

QLCmdLine& QLCmdLine::operator=(const QLCmdLine& other) {
    TryTo([&] {
        RWWString switches = other.switches_;
        Parse(other.PathAndFileName());
        switches_ = std::move(switches);
    });
    return *this;
}

RWWString QLCmdLine::GetCmdLine() const {
    return ql::FailureIfThrown({}, [this] {
        std::wstring text = CmdLine();
        if (!switches_.empty()) text.append(L" ").append(switches_);
        return text;
    });
}

int QLCmdLine::IsNull() const {
    return QLFileName::IsNull() && switches_.isNull();
}

void QLCmdLine::Reset() {
    ClearSwitches();
    QLFileName::Reset();
}

void QLCmdLine::SetCmdLine(ql::TextView text) {
    TryTo([&] {
        const Text line = ql::WithoutBlanks(text.substr(0, text.find(L'\0')));
        const std::size_t begin = SwitchesBegin(line);
        RWWString switches(ql::WithoutBlanks(line.substr(begin)));
        Parse(ql::WithoutBlanks(ql::WithoutQuotes(line.substr(0, begin))));
        switches_ = std::move(switches);
    });
}

RWWString QLCmdLine::GetSwitches() const {
    return ql::FailureIfThrown({}, [this] { return switches_; });
}

void QLCmdLine::SetSwitches(ql::TextView switches) {
    TryTo([&] { switches_ = ql::WithoutBlanks(switches); });
}

void QLCmdLine::AppendSwitches(ql::TextView switches) {
    TryTo([&] {
        RWWString more(switches.starts_with(L' ') ? L"" : L" ");
        switches_ += more.append(switches);
    });
}

int QLCmdLine::CompareTo(const QLCmdLine& other) const noexcept {
    const int order = QLFileName::CompareTo(other);
    return order != 0 ? order : ql::CompareIgnoringCase(switches_, other.switches_);
}
