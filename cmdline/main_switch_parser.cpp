#include "cmdline/main_switch_parser.h"

#include "cmdline/command_switches.h"
#include "cmdline/switch_values.h"
#include "names/file_type.h"
#include "platform/failure.h"
#include "platform/message_box.h"
#include "prefs/directories.h"

// One row a switch, in the order in which they are applied: a later one overrides an earlier one.
struct QuilletCmdSwitchParser::Switches {
    using Parser = QuilletCmdSwitchParser;
    using Value = const wchar_t*;

    struct Row {
        const wchar_t* name;
        SwitchKind kind;
        void (*apply)(Parser&, Value);
    };

    template <QuilletDirectories directory>
    static RWWString Ask() {
        return CQlDir::GetDirectory(directory);
    }
    template <FlagIndex... flags>
    static void Set(Parser& parser, Value) {
        (parser.flags_.set(flags), ...);
    }
    template <TextIndex text>
    static void Keep(Parser& parser, Value value) {
        parser.texts_[text] = value;
    }
    template <TextIndex text>
    static void KeepWord(Parser& parser, Value value) {
        parser.texts_[text] = ql::UpToBlank(value);
    }
    template <TextIndex text>
    static void KeepName(Parser& parser, Value value) {
        parser.texts_[text] = QLFileName(value).GetPathAndFileName();
    }
    template <TextIndex text, QuilletDirectories directory>
    static void KeepFile(Parser& parser, Value value) {
        parser.texts_[text] = ql::FullName(value, Ask<directory>).GetPathAndFileName();
    }
    template <TextIndex text>
    static void KeepFileHere(Parser& parser, Value value) {
        parser.texts_[text] = ql::FullNameHere(value).GetPathAndFileName();
    }
    template <LibMode mode>
    static void Mode(Parser& parser, Value) {
        parser.SetLibMode(mode);
    }
    template <FlagIndex flag, LibMode mode>
    static void SetWithMode(Parser& parser, Value) {
        parser.flags_.set(flag);
        parser.SetLibMode(mode);
    }
    template <ExitBehavior behavior>
    static void Exit(Parser& parser, Value) {
        parser.exit_ = behavior;
        parser.SetLibMode(LIBMODE_NONE);
    }
    template <OutputFileType type>
    static void Output(Parser& parser, Value) {
        parser.outputFileType_ = type;
    }
    static void KeepQLIFile(Parser& parser, Value value) {
        KeepName<kQLIFile>(parser, value);
        parser.SetLibMode(LIBMODE_SHOWN);
    }
    static void AskState(Parser& parser, Value value) {
        const bool unanswered = *value == L'u' || *value == L'U';
        parser.initialAskState_ = unanswered ? INITIALASK_UNANSWERED : INITIALASK_DEFAULT;
    }
    static void KeepLibrary(Parser& parser, Value value) {
        QLFileName library = ql::FullName(value, Ask<LibraryDirectory>);
        if (!library.HasExtension()) library.SetExtension(GetFileExt(FT_CLAUSE_LIBRARY));
        parser.texts_[kLibrary] = library.GetPathAndFileName();
        parser.SetLibMode(LIBMODE_SHOWN);
    }
    static void KeepNewAnswerFile(Parser& parser, Value value) {
        parser.flags_.set(kNewAnswer);
        KeepFile<kNewAnswerFile, AnswerDirectory>(parser, value);
    }
    static void AddOverlay(Parser& parser, Value value) { parser.overlayFiles_.AppendString(value); }
    static void Copies(Parser& parser, Value value) { parser.printCopies_ = ql::LeadingNumber(value); }
    static void Unregister(Parser& parser, Value) { parser.flags_.reset(kRegister); }

    static constexpr Row kRows[] = {
        {L"af=", SWITCH_VALUE, KeepFile<kAnswerFile, AnswerDirectory>},
        {L"as", SWITCH_FLAG, Output<OUTPUT_AS>},
        {L"automation", SWITCH_FLAG, SetWithMode<kAutomation, LIBMODE_NONE>},
        {L"cd", SWITCH_FLAG, Set<kCurrentDoc>},
        {L"cl=", SWITCH_VALUE, Keep<kClauseName>},
        {L"da", SWITCH_FLAG, Set<kDiscardAnswers>},
        {L"dde", SWITCH_FLAG, SetWithMode<kDDE, LIBMODE_NONE>},
        {L"df=", SWITCH_VALUE, KeepFile<kDefAnsFile, AnswerDirectory>},
        {L"embedding", SWITCH_FLAG, SetWithMode<kEmbedded, LIBMODE_NONE>},
        {L"ex", SWITCH_FLAG, Exit<EXIT_WHEN_DONE>},
        {L"ff", SWITCH_FLAG, Set<kFf>},
        {L"fi", SWITCH_FLAG, Set<kFi>},
        {L"qa=", SWITCH_VALUE, KeepName<kQLAFile>},
        {L"qla=", SWITCH_VALUE, KeepName<kQLAFile>},
        {L"qi=", SWITCH_VALUE, KeepQLIFile},
        {L"qli=", SWITCH_VALUE, KeepQLIFile},
        {L"if=", SWITCH_VALUE, KeepFile<kInstallationFile, ProgramDirectory>},
        {L"is=", SWITCH_VALUE, AskState},
        {L"la", SWITCH_FLAG, Set<kLockAnswers>},
        {L"lf=", SWITCH_VALUE, KeepLibrary},
        {L"ll", SWITCH_FLAG, SetWithMode<kLockLib, LIBMODE_SHOWN>},
        {L"nw", SWITCH_FLAG, Set<kHideAssemblyWindow>},
        {L"naw", SWITCH_FLAG, Set<kHideAssemblyWindow>},
        {L"na", SWITCH_FLAG, Set<kNewAnswer>},
        {L"na=", SWITCH_VALUE, KeepNewAnswerFile},
        {L"ni", SWITCH_FLAG, Set<kNoInterview>},
        {L"an", SWITCH_FLAG, Set<kNoInterview>},
        {L"nlw", SWITCH_FLAG, Mode<LIBMODE_HIDDEN>},
        {L"mi", SWITCH_FLAG, Mode<LIBMODE_HIDDEN>},
        {L"hl", SWITCH_FLAG, Mode<LIBMODE_HIDDEN>},
        {L"nx", SWITCH_FLAG, Exit<EXIT_NEVER>},
        {L"sig", SWITCH_FLAG, Set<kStartInterviewGroup>},
        {L"kig", SWITCH_FLAG, Set<kKeepInterviewGroup>},
        {L"mo", SWITCH_FLAG, Set<kModelDocument>},
        {L"of=", SWITCH_VALUE, KeepFileHere<kOutputFile>},
        {L"ov=", SWITCH_VALUE, AddOverlay},
        {L"pr", SWITCH_FLAG, Set<kPrint>},
        {L"fp", SWITCH_FLAG, Set<kPrint>},
        {L"pb", SWITCH_FLAG, Set<kPrintBoth>},
        {L"po", SWITCH_FLAG, Set<kPrintFormOnly>},
        {L"pa", SWITCH_FLAG, Set<kPrintAnswersOnly>},
        {L"pc=", SWITCH_VALUE, Copies},
        {L"pd", SWITCH_FLAG, Set<kPrintDuplex>},
        {L"ps=", SWITCH_VALUE, KeepWord<kPageSize>},
        {L"pt=", SWITCH_VALUE, KeepWord<kTray>},
        {L"pw", SWITCH_FLAG, Set<kPrintWithoutDialogs>},
        {L"qs", SWITCH_FLAG, Output<OUTPUT_QS>},
        {L"register", SWITCH_FLAG, Set<kRegister>},
        {L"regserver", SWITCH_FLAG, Set<kRegister>},
        {L"sa", SWITCH_FLAG, Set<kSaveAnswers>},
        {L"sap", SWITCH_FLAG, Set<kSaveAnswers, kSaveAnswersPrompt>},
        {L"si", SWITCH_FLAG, Set<kSuppressInstallation>},
        {L"slw", SWITCH_FLAG, Mode<LIBMODE_SHOWN>},
        {L"sl", SWITCH_FLAG, Mode<LIBMODE_SHOWN>},
        {L"ss", SWITCH_FLAG, Set<kSuggestSave>},
        {L"ssn", SWITCH_FLAG, Set<kSuggestSave, kSuggestSaveNew>},
        {L"stw", SWITCH_FLAG, Set<kSendToWP>},
        {L"sw", SWITCH_FLAG, Set<kSuppressUnansweredWarning>},
        {L"db", SWITCH_FLAG, Set<kSupressSplashScreen>},
        {L"fia", SWITCH_FLAG, Set<kFinishInterviewAction>},
        {L"tf=", SWITCH_VALUE, KeepFileHere<kTplPath>},
        {L"unregister", SWITCH_FLAG, Unregister},
        {L"unregserver", SWITCH_FLAG, Unregister},
        {L"desc=", SWITCH_VALUE, Keep<kDescription>},
        {L"pathdesc=", SWITCH_VALUE, Keep<kPathDescription>},
        {L"namedesc=", SWITCH_VALUE, Keep<kNameDescription>},
        {L"typedesc=", SWITCH_VALUE, Keep<kTypeDescription>},
        {L"ed=", SWITCH_VALUE, Keep<kEditFile>},
        {L"sto=", SWITCH_VALUE, Keep<kOutputPluginTokenId>},
    };
};

QuilletCmdSwitchParser::QuilletCmdSwitchParser(const wchar_t* commandLine) noexcept {
    if (commandLine) ParseSwitches(commandLine);
}

QuilletCmdSwitchParser::QuilletCmdSwitchParser(const QLCmdLine& commandLine) noexcept {
    ql::Completes([&] {
        if (!commandLine.GetPathAndFileName().isNull())
            texts_[kTplPath] = ql::FullNameHere(commandLine).GetPathAndFileName();
        const RWWString switches = commandLine.GetSwitches();
        if (switches.length() > 1) Take(switches.data());
    });
}

void QuilletCmdSwitchParser::ParseSwitches(const wchar_t* commandLine) noexcept {
    ql::Completes([&] { Take(commandLine); });
}

void QuilletCmdSwitchParser::Take(const wchar_t* commandLine) {
    CCommandSwitches given;
    for (const Switches::Row& row : Switches::kRows) given.DeclareSwitch(row.name, row.kind);
    given.Scan(commandLine);
    ignoredWords_ = given.GetIgnored();
    if (given.HasLeadingText()) TakeLeadingFile(given.GetLeadingText());

    // These say whether they are on this line; the others stay once they were given.
    for (const FlagIndex flag : {kStartInterviewGroup, kKeepInterviewGroup, kModelDocument})
        flags_.reset(flag);
    for (const Switches::Row& row : Switches::kRows) {
        if (const CCommandSwitch* const found = given.FindSwitch(row.name)) {
            row.apply(*this, found->GetValue().data());
        }
    }
}

void QuilletCmdSwitchParser::TakeLeadingFile(const wchar_t* text) {
    const QLFileName file = ql::FullNameHere(text);
    switch (GetFileType(file)) {
        case FT_BINARY_ANSWER_FILE:
        case FT_ANSWER_FILE: texts_[kAnswerFile] = file.GetPathAndFileName(); break;
        case FT_AUTO_ASSEMBLE_FILE: texts_[kQLAFile] = file.GetPathAndFileName(); break;
        default: texts_[kTplPath] = file.GetPathAndFileName();
    }
}

void QuilletCmdSwitchParser::SetLibMode(LibMode mode) noexcept {
    if (libMode_ == LIBMODE_UNDECIDED || libMode_ == LIBMODE_NONE) libMode_ = mode;
}

void QuilletCmdSwitchParser::CheckThis(unsigned long expected) const {
    ql::CheckObject(this, expected);
}
