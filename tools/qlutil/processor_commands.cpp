#include <optional>

#include "textproc/form_proc.h"
#include "textproc/form_proc_program.h"
#include "textproc/odma.h"
#include "tools/qlutil/command.h"

namespace {

constexpr FormProc kProcessors[] = {FP_WP13,     FP_WP14,      FP_WP15,     FP_WP16,
                                    FP_WP17,     FP_WORD2003,  FP_WORD2007, FP_WORD2010,
                                    FP_WORD2013, FP_AUTOMATOR, FP_FILLER,   FP_TEXT};

FileType RequireKind(std::wstring_view word) {
    return static_cast<FileType>(RequireInt(word, L"KIND"));
}

Record Describe(FormProc processor) {
    const RWWString templates = GetFormProcTmplDir(processor);
    return {{L"number", static_cast<int>(processor)},
            {L"name", GetFormProcName(processor)},
            {L"installed", !templates.isNull()},
            {L"templateDirectory", templates},
            {L"program", GetFormProcPath(processor).GetCmdLine()}};
}

Answer Processors(const Arguments&) {
    List processors;
    for (const FormProc processor : kProcessors) processors.push_back(Describe(processor));
    return Record{{L"processors", std::move(processors)},
                  {L"default", static_cast<int>(GetDefaultTextFormProc())},
                  {L"installedText", static_cast<int>(GetInstalledTextFormProc())}};
}

// For a kind the processor of its templates; for a file's name the one that the file is sent to or made by.
FormProc ProcessorOf(std::wstring_view word) {
    if (const std::optional<int> kind = ToInt(word)) return GetFormProcType(static_cast<FileType>(*kind));
    const QLFileName name(RWWString(word).data());
    const FormProc byKind = GetFormProcType(GetFileType(name));
    if (byKind != FP_NONE || GetDocumentType(name) == FT_NONE) return byKind;
    return GetSendDocToTextFormProc(name);
}

Answer ProcessorFor(const Arguments& arguments) {
    const FormProc processor = ProcessorOf(arguments[0]);
    Record record = {{L"number", static_cast<int>(processor)}, {L"name", GetFormProcName(processor)}};
    if (processor != FP_NONE) return record;
    return Answer(std::move(record), L"no processor for " + std::wstring(arguments[0]) + L" is installed");
}

Answer Formalize(const Arguments& arguments) {
    const QLCmdLine line = FormalizeFormProcCmdLine(std::wstring(arguments[0]).c_str());
    return Record{{L"file", line.GetPathAndFileName()}, {L"switches", line.GetSwitches()}};
}

Answer Odma(const Arguments& arguments) {
    const FileType kind = RequireKind(arguments[0]);
    return Record{{L"applicationId", GetOdmaApplicationId(kind)}, {L"formatName", GetOdmaFormatName(kind)}};
}

constexpr Command kCommands[] = {
    {L"processors",
     L"",
     L"The text processors, whether they are installed, and which is used.",
     {},
     0,
     0,
     Processors},
    {L"processor-for",
     L"KIND|NAME",
     L"The processor for a kind of template (a number of \"kind\") or for a file.",
     {},
     1,
     1,
     ProcessorFor},
    {L"formalize",
     L"TEXT",
     L"The program and the switches of an open command in the registry.",
     {},
     1,
     1,
     Formalize},
    {L"odma", L"KIND", L"The document-management id and format name of a kind.", {}, 1, 1, Odma},
};

}  // namespace

std::span<const Command> ProcessorCommands() {
    return kCommands;
}
