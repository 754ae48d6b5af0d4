// Takes command lines apart, puts them together and takes those apart again: an ordinary one must stand
// still. Then the same text as an open command of the registry. Each line of the input is a text.
#include "names/cmd_line.h"
#include "tests/fuzz/fuzz.h"
#include "textproc/form_proc_program.h"

namespace {

bool Has(const std::wstring& text, const wchar_t* part) {
    return text.find(part) != std::wstring::npos;
}

// Command lines whose text says all: names without quotes, references and tails, and switches that are told
// from them, by a closing quote or by a slash that is the first.
bool IsOrdinary(const QLCmdLine& line) {
    const std::wstring name = line.GetPathAndFileName().str(), switches = line.GetSwitches().str();
    if (line.IsRemote() || !line.GetTail().isNull() || Has(name, L"\"") || Has(name, L"%")) return false;
    return Has(name, L" /") || (!Has(name, L"/") && (switches.empty() || switches.front() == L'/'));
}

void CheckStable(const QLCmdLine& line, const std::wstring& composed) {
    const QLCmdLine again(composed.c_str());
    Expect(again.GetCmdLine().view() == composed);
    Expect(again.GetPathAndFileName() == line.GetPathAndFileName());
    Expect(again.GetSwitches() == line.GetSwitches());
}

void CheckWhole(const QLCmdLine& line) {
    Expect(line.IsNull() == (line.QLFileName::IsNull() && line.GetSwitches().isNull()));
    Expect(QLCmdLine(line) == line);
    QLCmdLine other(line);
    other.SetSwitches(line.GetSwitches().data());
    Expect(other == line);
    other.AppendSwitches(L"/x");
    Expect(other.CompareTo(line) > 0);
    other.Reset();
    Expect(other.IsNull() && other.GetCmdLine().isNull());
}

// An ending for the document makes no difference, and nothing is made up but what composing a name adds.
void CheckOpenCommand(const std::wstring& text) {
    constexpr std::wstring_view kEndings[] = {L"%1", L"\"%1\"", L"/ddeex"};
    constexpr std::size_t kAdded = 8;
    const QLCmdLine line = FormalizeFormProcCmdLine(text.c_str());
    CheckWhole(line);
    Expect(Has(text, L"%") || line.GetCmdLine().length() <= text.size() + kAdded);
    const std::wstring command = text.substr(0, text.find_last_not_of(L' ') + 1);
    const auto endsCommand = [&](std::wstring_view ending) { return command.ends_with(ending); };
    if (command.empty() || std::ranges::any_of(kEndings, endsCommand)) return;
    for (const std::wstring_view ending : kEndings) {
        const std::wstring whole = command + L' ' + std::wstring(ending);
        Expect(FormalizeFormProcCmdLine(whole.c_str()).GetCmdLine() == line.GetCmdLine());
    }
}

void Check(const std::wstring& text) {
    const QLCmdLine line(text.c_str());
    CheckWhole(line);
    if (IsOrdinary(line)) CheckStable(line, line.GetCmdLine().str());
    CheckOpenCommand(text);
}

}  // namespace

FUZZER(CmdLine, "", " ", "\"", "/", "a b.c", "C:\\", "%1", "/ddeex", ".exe", "\n") {
    ForEachLine(input, Check);
}
