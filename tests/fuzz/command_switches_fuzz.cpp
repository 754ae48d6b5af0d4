// Holds the scanner against a plain model of its rules. The first line of the input declares the names, the
// others are scanned one after the other.
#include <sstream>
#include <vector>

#include "tests/cmdline/scanner_model.h"
#include "tests/fuzz/fuzz.h"

namespace {

std::vector<std::wstring> Split(const std::wstring& text, wchar_t separator) {
    std::vector<std::wstring> parts;
    std::wistringstream units(text + separator);
    for (std::wstring part; std::getline(units, part, separator);) parts.push_back(part);
    return parts;
}

}  // namespace

void Try(Input input) {
    std::wstring text = TextOf(input);
    std::ranges::replace(text, L'\0', L'\u0130');
    const std::vector<std::wstring> lines = Split(text, L'\n');
    CCommandSwitches switches;
    ScannerModel model;
    for (const std::wstring& name : Split(lines.front(), L',')) {
        switches.DeclareSwitch(name.c_str(), ScannerModel::KindOf(name));
        model.Declare(name);
    }
    for (std::size_t i = 1; i < lines.size(); ++i) {
        switches.Scan(lines[i].c_str());
        model.Scan(lines[i]);
        Expect(model.StateOf(switches) == model.State());
        Expect(switches.HasLeadingText() == (*switches.GetLeadingText() != 0));
    }
}
