// The part of form_proc_program.h that asks neither the registry nor the disk.
#include <string>
#include <string_view>

#include "platform/failure.h"
#include "text/blanks.h"
#include "text/characters.h"
#include "textproc/form_proc_program.h"

namespace {

using Text = std::wstring_view;

constexpr std::size_t kNone = Text::npos;
constexpr Text kDocumentEndings[] = {L"%1", L"\"%1\"", L"/ddeex"};

Text WithoutDocument(Text text) {
    for (const Text ending : kDocumentEndings) {
        if (text.size() > ending.size() && text.ends_with(ending)) {
            text.remove_suffix(ending.size());
            break;
        }
    }
    return ql::WithoutTrailingBlanks(text);
}

std::wstring WithQuotedProgram(std::wstring text) {
    constexpr Text kProgramEnd = L".exe";
    if (text.starts_with(L'"')) return text;
    std::wstring lower = text;
    ql::MakeLower(lower);
    const std::size_t at = lower.find(kProgramEnd);
    if (at == kNone) return text;
    const std::size_t end = at + kProgramEnd.size();
    if (text.find(L' ') >= end) return text;
    return L'"' + text.substr(0, end) + L"\" " + text.substr(end);
}

}  // namespace

QLCmdLine FormalizeFormProcCmdLine(const wchar_t* text) {
    return ql::FailureIfThrown(QLCmdLine(), [&] {
        const Text command = WithoutDocument(ql::WithoutBlanks(ql::TextOf(text)));
        return QLCmdLine(WithQuotedProgram(std::wstring(command)).c_str());
    });
}
