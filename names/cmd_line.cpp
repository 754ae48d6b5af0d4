#include "names/cmd_line.h"

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

QLCmdLine::QLCmdLine(const wchar_t* text) {
    SetCmdLine(text);
}

QLCmdLine::QLCmdLine(const wchar_t* path, const wchar_t* name, const wchar_t* ext, const wchar_t* switches)
    : QLFileName(path, name, ext) {
    SetSwitches(switches);
}

QLCmdLine& QLCmdLine::operator=(const QLCmdLine& other) {
    SetPathAndFileName(other);
    switches_ = other.switches_;
    return *this;
}

RWWString QLCmdLine::GetCmdLine() const {
    RWWString text = QLFileName::GetCmdLine();
    if (!switches_.isNull()) text.append(L' ').append(switches_);
    return text;
}

int QLCmdLine::IsNull() const {
    return QLFileName::IsNull() && switches_.isNull();
}

void QLCmdLine::Reset() {
    ClearSwitches();
    QLFileName::Reset();
}

void QLCmdLine::SetCmdLine(const wchar_t* text) {
    const Text line = ql::WithoutBlanks(ql::TextOf(text));
    const std::size_t begin = SwitchesBegin(line);
    switches_ = RWWString(ql::WithoutBlanks(line.substr(begin)));
    const RWWString name(ql::WithoutBlanks(ql::WithoutQuotes(line.substr(0, begin))));
    SetPathAndFileName(name.data());
}

void QLCmdLine::SetSwitches(const wchar_t* switches) {
    switches_ = RWWString(ql::WithoutBlanks(ql::TextOf(switches)));
}

void QLCmdLine::AppendSwitches(const wchar_t* switches) {
    const Text text = ql::TextOf(switches);
    if (!text.starts_with(L' ')) switches_.append(L' ');
    switches_.append(text);
}

int QLCmdLine::CompareTo(const QLCmdLine& other) const noexcept {
    const int order = QLFileName::CompareTo(other);
    return order != 0 ? order : ql::CompareIgnoringCase(switches_, other.switches_);
}
