#pragma once

#include <map>
#include <string>
#include <string_view>

#include "rw/wide_string.h"

// What may be said on a command line of one program, and what a line says. Every switch is declared first,
// then a line is scanned, then the switches are asked about by name.
//
// Kept on purpose: a declared name claims every token that begins with it, and the first in ascending order
// of names wins. With "na" and "na=" declared, "/na=x" sets the flag "na". The prefix character may be left
// out.

enum SwitchKind : int {
    SWITCH_NONE = 0,   // matches nothing
    SWITCH_FLAG = 1,   // given or not
    SWITCH_VALUE = 2,  // its text follows an equals sign; the name ends in it ("sto=")
};

class CCommandSwitch {
  public:
    CCommandSwitch(std::wstring_view name, SwitchKind kind);

    // Whether the token is this switch; if so, its presence or value is remembered. The prefix character ("/"
    // or "-") is skipped. A value loses a quote of either kind in front and one behind, whether or not they
    // are a pair, and its blanks around; a token without an equals sign leaves the value as it was.
    bool Matches(std::wstring_view token);

    bool IsPresent() const noexcept { return present_; }
    const RWWString& GetValue() const noexcept { return value_; }
    SwitchKind GetKind() const noexcept { return kind_; }
    const RWWString& GetName() const noexcept { return name_; }

  private:
    SwitchKind kind_;
    RWWString name_;
    RWWString value_;
    bool present_ = false;
};

class CCommandSwitches {
  public:
    // Blanks around the name are dropped. Of two declarations of one name, the first stays.
    void DeclareSwitch(const wchar_t* name, SwitchKind kind);

    // Tokens are separated by blanks outside double quotes; the quotes are dropped. A line that begins with
    // neither "/" nor "-" begins with the leading text, which ends at the first blank outside quotes that
    // such a character follows. Tokens that match nothing are ignored; of repeated values the last stays. A
    // null line does nothing.
    void Scan(const wchar_t* commandLine);

    bool HasLeadingText() const noexcept { return !leadingText_.isNull(); }
    const wchar_t* GetLeadingText() const noexcept { return leadingText_.data(); }

    // What the line said; null, false and null for a switch that it did not name. A value that is given empty
    // is the empty text.
    const CCommandSwitch* FindSwitch(const wchar_t* name) const;
    bool IsSwitchSet(const wchar_t* name) const;
    const wchar_t* GetSwitchValue(const wchar_t* name) const;

  private:
    struct Declared {
        CCommandSwitch commandSwitch;
        bool found = false;
    };

    std::size_t TakeLeadingText(std::wstring_view line);
    void Match(std::wstring_view token);

    std::map<std::wstring, Declared, std::less<>> declared_;
    RWWString leadingText_;
};
