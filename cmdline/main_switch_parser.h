#pragma once

#include <array>
#include <bitset>
#include <optional>

#include "names/cmd_line.h"
#include "platform/export.h"
#include "rw/wide_string.h"
#include "text/string_table.h"
#include "textproc/form_proc.h"

// How the library of templates is to be shown.
enum LibMode : int {
    LIBMODE_NONE = 0,  // no library window: a server, or one task and out
    LIBMODE_HIDDEN = 1,
    LIBMODE_UNDECIDED = 2,
    LIBMODE_SHOWN = 3,
};

// What becomes of the program, of the output, and of the answers at the start.
enum ExitBehavior : int { EXIT_WHEN_DONE = 0, EXIT_NEVER = 1, EXIT_UNDECIDED = 2 };
enum OutputFileType : int { OUTPUT_NOT_GIVEN = 0, OUTPUT_AS = 1, OUTPUT_QS = 2 };
enum INITIALASKSTATE : int { INITIALASK_DEFAULT = 0, INITIALASK_UNANSWERED = 1 };

// The command line of the main application as a set of options. Each switch is "/name" or "-name", with "="
// and its text for one that has a value; text before the first switch is the file to start with. Files become
// full paths, as MakeFullPath makes them (so remote, plug-in and document-management names stay as they are),
// but for QLI and QLA files that a switch names, which are read as file names and not completed, the edit
// file and overlays, which are kept as given.
//
// A library without an extension gets ".qll", a document-management id too.
//
// Kept on purpose: a switch claims every word that begins with its name, the first in ascending order of
// names. So /naw and /namedesc=... act as na, /pathdesc=... as pa, /sap as sa, /sig as si, /slw as sl, /ssn
// as ss, /fia as fi, and every /na=... is the flag na.
//
// Of a text that a line gives twice the last counts. Texts are null when not given, and live as long as the
// object and until the next ParseSwitches. A copy owns its own. Preferences, the directories and the current
// directory are read while parsing, where a file's name has no root. Of what memory has no room for, nothing
// is given; copying alone throws. Use one object from one thread at a time.
class QL_API QuilletCmdSwitchParser {
  public:
    explicit QuilletCmdSwitchParser(const wchar_t* commandLine) noexcept;  // null: nothing is given

    // The line's file is the template, whatever its kind, completed against the current directory.
    explicit QuilletCmdSwitchParser(const QLCmdLine& commandLine) noexcept;

    // Reads a line on top of what was read before: what it does not give stays, but for the flags of sig, kig
    // and mo, its last overlay is added, and the ignored words are this line's. Null is a line of nothing.
    void ParseSwitches(const wchar_t* commandLine) noexcept;

    // Changes the mode while it is LIBMODE_UNDECIDED or LIBMODE_NONE; the other two stay.
    void SetLibMode(LibMode mode) noexcept;

    // Shows an error message unless `expected` is the object's own address, the low 32 bits of it where
    // addresses have more.
    void CheckThis(unsigned long expected) const;

    // What switches choose: is= the answers asked at first; as or qs the kind of output; lf=, qi=, ll, sl, hl
    // and others the library's window; ex or nx what the program does when it is done.
    INITIALASKSTATE GetInitialAskState() const noexcept { return initialAskState_; }
    OutputFileType GetOutputFileType() const noexcept { return outputFileType_; }
    FormProc GetFormProc() const noexcept { return FP_NONE; }  // no switch sets it
    LibMode GetLibMode() const noexcept { return libMode_; }
    ExitBehavior GetExit() const noexcept { return exit_; }

    // The text of a switch, null when not given, in this order: tf= or the file in front; af= or an answer
    // file in front; na=; of=; lf=; qi= or qli=; qa=, qla= or a list of assemblies in front; if=; df=; sto=;
    // cl=; pt= and ps= (their first words); desc=; pathdesc=; typedesc=; namedesc=; ed=.
    const wchar_t* GetTplPath() const noexcept { return TextOf(kTplPath); }
    const wchar_t* GetAnswerFile() const noexcept { return TextOf(kAnswerFile); }
    const wchar_t* GetNewAnswerFile() const noexcept { return TextOf(kNewAnswerFile); }
    const wchar_t* GetOutputFile() const noexcept { return TextOf(kOutputFile); }
    const wchar_t* GetLibrary() const noexcept { return TextOf(kLibrary); }
    const wchar_t* GetQLIFile() const noexcept { return TextOf(kQLIFile); }
    const wchar_t* GetQLAFile() const noexcept { return TextOf(kQLAFile); }
    const wchar_t* GetInstallationFile() const noexcept { return TextOf(kInstallationFile); }
    const wchar_t* GetDefAnsFile() const noexcept { return TextOf(kDefAnsFile); }
    const wchar_t* GetOutputPluginTokenId() const noexcept { return TextOf(kOutputPluginTokenId); }
    const wchar_t* GetClauseName() const noexcept { return TextOf(kClauseName); }
    const wchar_t* GetTray() const noexcept { return TextOf(kTray); }
    const wchar_t* GetPageSize() const noexcept { return TextOf(kPageSize); }
    const wchar_t* GetDescription() const noexcept { return TextOf(kDescription); }
    const wchar_t* GetPathDescription() const noexcept { return TextOf(kPathDescription); }
    const wchar_t* GetTypeDescription() const noexcept { return TextOf(kTypeDescription); }
    const wchar_t* GetNameDescription() const noexcept { return TextOf(kNameDescription); }
    const wchar_t* GetEditFile() const noexcept { return TextOf(kEditFile); }

    // Whether there is such a file; an answer file may be a new one.
    bool IsAsmSwitch() const noexcept { return GetTplPath() != nullptr; }
    bool IsQLASwitch() const noexcept { return GetQLAFile() != nullptr; }
    bool IsQLISwitch() const noexcept { return GetQLIFile() != nullptr; }
    bool IsEditSet() const noexcept { return GetEditFile() != nullptr; }
    bool IsAnswerFileSet() const noexcept { return GetAnswerFile() || GetNewAnswerFile(); }
    bool IsOverlay() const { return overlayFiles_.NumEntries() > 0; }
    // LIBMODE_SHOWN, and also LIBMODE_UNDECIDED.
    bool IsLibraryVisible() const noexcept {
        return libMode_ == LIBMODE_UNDECIDED || libMode_ == LIBMODE_SHOWN;
    }

    // Whether a flag was given, in this order: ni or an; sa or sap; sap; la; ll; na; sw; db; pr or fp; pb;
    // po; pa; pd; pw; cd; da; register or regserver, and no unregister; nw or naw; stw; si; dde; automation;
    // embedding; ss or ssn; ssn; fia; sig; kig; mo.
    bool IsNoInterview() const noexcept { return flags_[kNoInterview]; }
    bool IsSaveAnswers() const noexcept { return flags_[kSaveAnswers]; }
    bool IsSaveAnswersPrompt() const noexcept { return flags_[kSaveAnswersPrompt]; }
    bool IsLockAnswers() const noexcept { return flags_[kLockAnswers]; }
    bool IsLockLib() const noexcept { return flags_[kLockLib]; }
    bool IsNewAnswer() const noexcept { return flags_[kNewAnswer]; }
    bool IsSuppressUnansweredWarning() const noexcept { return flags_[kSuppressUnansweredWarning]; }
    bool IsSupressSplashScreen() const noexcept { return flags_[kSupressSplashScreen]; }
    bool IsPrint() const noexcept { return flags_[kPrint]; }
    bool IsPrintBoth() const noexcept { return flags_[kPrintBoth]; }
    bool IsPrintFormOnly() const noexcept { return flags_[kPrintFormOnly]; }
    bool IsPrintAnswersOnly() const noexcept { return flags_[kPrintAnswersOnly]; }
    bool IsPrintDuplex() const noexcept { return flags_[kPrintDuplex]; }
    bool IsPrintWithoutDialogs() const noexcept { return flags_[kPrintWithoutDialogs]; }
    bool IsCurrentDoc() const noexcept { return flags_[kCurrentDoc]; }
    bool IsDiscardAnswers() const noexcept { return flags_[kDiscardAnswers]; }
    bool IsRegister() const noexcept { return flags_[kRegister]; }
    bool IsHideAssemblyWindow() const noexcept { return flags_[kHideAssemblyWindow]; }
    bool IsSendToWP() const noexcept { return flags_[kSendToWP]; }
    bool IsSuppressInstallation() const noexcept { return flags_[kSuppressInstallation]; }
    bool IsDDE() const noexcept { return flags_[kDDE]; }
    bool IsAutomation() const noexcept { return flags_[kAutomation]; }
    bool IsEmbedded() const noexcept { return flags_[kEmbedded]; }
    bool IsSuggestSaveSet() const noexcept { return flags_[kSuggestSave]; }
    bool IsSuggestSaveNewSet() const noexcept { return flags_[kSuggestSaveNew]; }
    bool IsFinishInterviewActionSet() const noexcept { return flags_[kFinishInterviewAction]; }
    bool IsStartInterviewGroupSet() const noexcept { return flags_[kStartInterviewGroup]; }
    bool IsKeepInterviewGroupSet() const noexcept { return flags_[kKeepInterviewGroup]; }
    bool IsModelDocument() const noexcept { return flags_[kModelDocument]; }

    // 1 when not given, 0 when what was given does not start with a digit.
    long GetPrintCopies() const noexcept { return printCopies_; }

    // The texts of ov=, as given: of each line its last one. The caller may change the table.
    QLStringTable& GetOverlayFiles() noexcept { return overlayFiles_; }

    // The words of the last line that no switch claimed: a misspelt switch is among them.
    const QLStringTable& GetIgnoredWords() const noexcept { return ignoredWords_; }

  private:
    enum TextIndex {
        kTplPath,
        kAnswerFile,
        kNewAnswerFile,
        kOutputFile,
        kLibrary,
        kQLIFile,
        kQLAFile,
        kInstallationFile,
        kDefAnsFile,
        kOutputPluginTokenId,
        kClauseName,
        kTray,
        kPageSize,
        kDescription,
        kPathDescription,
        kTypeDescription,
        kNameDescription,
        kEditFile,
        kTextCount
    };
    enum FlagIndex {
        kNoInterview,
        kSaveAnswers,
        kSaveAnswersPrompt,
        kLockAnswers,
        kLockLib,
        kNewAnswer,
        kSuppressUnansweredWarning,
        kSupressSplashScreen,
        kPrint,
        kPrintBoth,
        kPrintFormOnly,
        kPrintAnswersOnly,
        kPrintDuplex,
        kPrintWithoutDialogs,
        kCurrentDoc,
        kDiscardAnswers,
        kRegister,
        kHideAssemblyWindow,
        kSendToWP,
        kSuppressInstallation,
        kDDE,
        kAutomation,
        kEmbedded,
        kFi,
        kFf,
        kSuggestSave,
        kSuggestSaveNew,
        kFinishInterviewAction,
        kStartInterviewGroup,
        kKeepInterviewGroup,
        kModelDocument,
        kFlagCount
    };
    struct Switches;

    const wchar_t* TextOf(TextIndex index) const noexcept {
        return texts_[index] ? texts_[index]->data() : nullptr;
    }
    void Take(const wchar_t* commandLine);
    void TakeLeadingFile(const wchar_t* text);

    INITIALASKSTATE initialAskState_ = INITIALASK_DEFAULT;
    OutputFileType outputFileType_ = OUTPUT_NOT_GIVEN;
    LibMode libMode_ = LIBMODE_UNDECIDED;
    ExitBehavior exit_ = EXIT_UNDECIDED;
    std::array<std::optional<RWWString>, kTextCount> texts_;
    QLStringTable overlayFiles_, ignoredWords_;
    long printCopies_ = 1;
    std::bitset<kFlagCount> flags_;
};
