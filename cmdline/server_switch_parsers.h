#pragma once

#include <bitset>
#include <optional>

#include "names/cmd_line.h"
#include "platform/export.h"
#include "rw/wide_string.h"
#include "text/string_table.h"

// What the Filler's and the Automator's command lines have in common, which is everything: a file to open,
// printing and the start as a server. Names and meanings are those of cmdline/main_switch_parser.h, the way
// names are claimed included; but registering and unregistering are two flags. Other switches are ignored.
//
// Texts are null when not given and live as long as the object. Of what memory has no room for, nothing is
// given; copying alone throws. Use one object from one thread at a time.
class QL_API ServerCmdSwitches {
  public:
    const wchar_t* GetFileName() const noexcept { return Text(fileName_); }  // a full path
    // The first words of pt= and ps=.
    const wchar_t* GetTray() const noexcept { return Text(tray_); }
    const wchar_t* GetPageSize() const noexcept { return Text(pageSize_); }
    // 1 when not given, 0 when what was given does not start with a digit.
    long GetPrintCopies() const noexcept { return printCopies_; }
    bool IsPrint() const noexcept { return flags_[kPrint]; }
    bool IsRegister() const noexcept { return flags_[kRegister]; }
    bool IsUnregister() const noexcept { return flags_[kUnregister]; }
    bool IsSupressSplashScreen() const noexcept { return flags_[kSupressSplashScreen]; }
    bool IsPrintBoth() const noexcept { return flags_[kPrintBoth]; }
    bool IsPrintFormOnly() const noexcept { return flags_[kPrintFormOnly]; }
    bool IsPrintAnswersOnly() const noexcept { return flags_[kPrintAnswersOnly]; }
    bool IsPrintDuplex() const noexcept { return flags_[kPrintDuplex]; }
    bool IsPrintWithoutDialogs() const noexcept { return flags_[kPrintWithoutDialogs]; }
    bool IsDDE() const noexcept { return flags_[kDDE]; }
    bool IsAutomation() const noexcept { return flags_[kAutomation]; }
    bool IsEmbedded() const noexcept { return flags_[kEmbedded]; }
    const QLStringTable& GetIgnoredWords() const noexcept { return ignoredWords_; }  // that no switch claimed

    // Shows an error message unless `expected` is the object's own address, the low 32 bits of it where
    // addresses have more.
    void CheckThis(unsigned long expected) const;

  protected:
    explicit ServerCmdSwitches(const wchar_t* commandLine) noexcept;    // null: nothing is given
    explicit ServerCmdSwitches(const QLCmdLine& commandLine) noexcept;  // its name, and its switches

    // A copy owns its texts.
    ServerCmdSwitches(const ServerCmdSwitches&) = default;
    ServerCmdSwitches& operator=(const ServerCmdSwitches&) = default;
    ~ServerCmdSwitches() = default;

  private:
    enum FlagIndex {
        kPrint,
        kRegister,
        kUnregister,
        kSupressSplashScreen,
        kPrintBoth,
        kPrintFormOnly,
        kPrintAnswersOnly,
        kPrintDuplex,
        kPrintWithoutDialogs,
        kDDE,
        kAutomation,
        kEmbedded,
        kFlagCount
    };
    struct Table;

    static const wchar_t* Text(const std::optional<RWWString>& text) noexcept {
        return text ? text->data() : nullptr;
    }
    void ParseSwitches(const wchar_t* commandLine);
    void TakeFile(const QLFileName& name);

    std::optional<RWWString> fileName_, tray_, pageSize_;
    long printCopies_ = 1;
    std::bitset<kFlagCount> flags_;
    QLStringTable ignoredWords_;
};

// The command line of the form filler.
class QL_API FillerCmdSwitchParser : public ServerCmdSwitches {
  public:
    explicit FillerCmdSwitchParser(const wchar_t* commandLine) noexcept;    // null: nothing is given
    explicit FillerCmdSwitchParser(const QLCmdLine& commandLine) noexcept;  // its name, and its switches
};

// The command line of the form automator.
class QL_API AutomatorCmdSwitchParser : public ServerCmdSwitches {
  public:
    explicit AutomatorCmdSwitchParser(const wchar_t* commandLine) noexcept;    // null: nothing is given
    explicit AutomatorCmdSwitchParser(const QLCmdLine& commandLine) noexcept;  // its name, and its switches
};
