#include "cmdline/main_switch_parser.h"
#include "cmdline/server_switch_parsers.h"
#include "engine/result.h"
#include "files/full_path.h"
#include "files/kept_name.h"
#include "logging/log_line.h"
#include "prefs/markup_options.h"
#include "settings/scopes.h"
#include "tests/memory/failing_memory.h"
#include "tests/support/private_registry.h"
#include "tests/zip/members.h"
#include "textproc/form_proc.h"
#include "textproc/form_proc_program.h"
#include "textproc/odma.h"

namespace memory {

namespace {

constexpr wchar_t kLine[] =
    L"\"a template of some length.docx\" /af=answers /lf=library /of=C:\\output.docx "
    L"/ov=an-overlay-of-some-length "
    L"/a-word-that-means-nothing /ps=a-size-of-paper /desc=\"and a description\"";
const QLCmdLine kCommand(kLine);
const RWWString kRelative(L"a relative name.docx"), kLocated(L"^Location\\a relative name"),
    kAnswers(L"\"a name of answers.anx\" /a-switch-of-some-length");
const std::string kLongContent(3000, 'x');
const std::vector<ql::zip::Member> kMembers = {
    {"a member with a name of some length.txt", kLongContent, 32, 6}, {"stored.txt", kLongContent}};

// An archive's work answers that there was no memory, and nothing else than its result otherwise.
Row Works(const char* what, std::function<void()> work) {
    return {what, [work](Attempt& attempt) {
                auto result = ql::zip::Result::kOk;
                attempt([&] { result = ql::zip::ResultOf(work); });
                EXPECT_EQ(attempt.HasFailed() ? ql::zip::Result::kNoMemory : ql::zip::Result::kOk, result);
            }};
}

ql::zip::Bytes Written() {
    ql::zip::MemoryOutput output;
    Write(output, kMembers, "a comment of some length");
    return output.bytes;
}

// A whole name, or none: never one by the default of a preference that is set.
void CompleteByPreferences(Attempt& attempt) {
    const PrivateRegistry registry;
    PrivateRegistry::Put(kUser, L"Word Proc", L"Default", L"Word 2010");
    PrivateRegistry::Put(kUser, L"Word Proc\\Word 2010", L"Template Files", L"W:\\templates of Word");
    PrivateRegistry::Put(kUser, L"Locations", L"Answer Files", L"A:\\answers of some length");
    PrivateRegistry::Put(kMachine, L"Locations", L"Location", L"L:\\a shared folder");
    const QLLibraryScope library;
    const QLThreadScope thread;
    for (const RWWString& name : {kRelative, kLocated, kAnswers}) {
        RWWString full;
        attempt([&] { full = MakeFullPath(name, nullptr, L"extension").GetCmdLine(); });
        if (!full.isNull()) EXPECT_EQ(MakeFullPath(name, nullptr, L"extension").GetCmdLine(), full);
    }
}

}  // namespace

std::vector<Row> ProgramCalls() {
    return {
        Calls("lines of the three programs read",
              [] {
                  QuilletCmdSwitchParser(kLine).ParseSwitches(kLine);
                  QuilletCmdSwitchParser(kCommand).GetOverlayFiles();
                  const FillerCmdSwitchParser filler(kLine);
                  const AutomatorCmdSwitchParser automator(kCommand);
              }),
        {"names completed", CompleteByPreferences},
        {"the name of a walked file kept",
         [](Attempt& attempt) {
             QLFileName entry, kept;
             entry.SetEntry(QLFileName(L"C:\\a folder of some length\\"), L"a report of some length.doc#1");
             attempt([&] { ql::KeepName(kept, entry); });
             if (!kept.IsNull()) EXPECT_EQ(entry, kept) << "another file, or the folder";
         }},
        Calls("text processors asked for",
              [] {
                  GetDefaultTextFormProc();
                  GetFormProcTmplDir(FP_TEXT);
                  GetFormProcRegName(GetMSWordVersion());
                  GetOdmaFormatName(FT_ANSWER_FILE);
                  SetOdmaFormatName(FT_ANSWER_FILE, L"the name of a format");
                  FormalizeFormProcCmdLine(L"C:\\a program's path\\word.exe /n %1");
              }),
        Calls("markup options read", [] { CPrettyTplOpt().GetColors(nullptr); }),
        // Not emitted: its memory would be given back by the writer, some time.
        Calls("a line of the log built",
              [] {
                  QLLoggerLevelInserter(QLLOG_INFO, "a source's name of some length.cpp", 1)
                      << std::wstring_view(kLine) << 3.5 << L' ' << "narrow";
              }),
        Works("an archive written", [] { Written(); }),
        Works("an archive read",
              [] {
                  static const ql::zip::Bytes bytes = Written();
                  ql::zip::MemoryInput file(bytes.data(), bytes.size());
                  const ql::zip::Archive archive(file);
                  for (std::size_t i = 0; i < kMembers.size(); ++i) ContentOf(file, archive, i);
              }),
    };
}

}  // namespace memory
