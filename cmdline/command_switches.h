#pragma once

#include <map>
#include <string>
#include <string_view>

#include "rw/wide_string.h"
#include "text/string_table.h"

// What may be said on a command line of one program, and what a line says. Every switch is declared first,
// then a line is scanned, then the switches are asked about by name.
//
// Kept on purpose:
//  - A declared name claims every token that begins with it, in any case, and the first in ascending order of
//    names (by code unit) wins. With "na" and "na=" declared, "/na=x" sets the flag "na".
//  - The prefix character may be left out: with "ni" declared, "/x ni" sets it.
//  - The quotes of a value need not be a pair: /sto='a is a, and so is /sto=a'.
//
// Blanks are U+0020 alone. Null texts are empty unless something else is said. Use one object from one thread
// at a time.

enum SwitchKind : int {
    SWITCH_NONE,   // matches nothing
    SWITCH_FLAG,   // given or not
    SWITCH_VALUE,  // its text follows an equals sign; the name ends in it ("sto=")
};

// One declared switch and what was said of it.
class CCommandSwitch {
  public:
    CCommandSwitch(std::wstring_view name, SwitchKind kind);  // blanks around the name are dropped
    virtual ~CCommandSwitch() = default;
    CCommandSwitch(const CCommandSwitch&) = default;
    CCommandSwitch& operator=(const CCommandSwitch&) = default;

    // Whether the token begins with the name, after one prefix character ("/" or "-") if it has one; if so,
    // its presence or value is remembered. The value is what follows the first equals sign, without one quote
    // (" or ') in front and one behind, then without blanks around. A token without an equals sign leaves the
    // value as it was. A null token is no switch.
    bool Matches(const wchar_t* token) { return token && Matches(std::wstring_view(token)); }
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
    CCommandSwitches() = default;
    virtual ~CCommandSwitches() = default;

    // Blanks around the name are dropped, here alone. Of two declarations of one name, the first stays.
    void DeclareSwitch(const wchar_t* name, SwitchKind kind);

    // Tokens are separated by blanks outside double quotes; the quotes are dropped. A line that begins with
    // neither "/" nor "-" begins with the leading text, which ends at the first blank outside quotes that
    // such a character follows. Tokens that match nothing are ignored; of repeated values the last stays.
    // Blanks around the line are dropped. What earlier scans found stays found.
    void Scan(const wchar_t* commandLine);

    // The words of the last line that no switch claimed, without their quotes.
    const QLStringTable& GetIgnored() const noexcept { return ignored_; }

    // Without its quotes; empty when there is none. Valid until the next scan.
    bool HasLeadingText() const noexcept { return !leadingText_.isNull(); }
    const wchar_t* GetLeadingText() const noexcept { return leadingText_.data(); }

    // What the line said of a name as it was declared; null, false and null for a switch that it did not
    // give, or that is of the other kind. A value that is given empty is the empty text. Pointers are valid
    // as long as the object, the value's until the next scan.
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

    // Its order is the rule: of the names that a token begins with, the first claims it.
    std::map<std::wstring, Declared, std::less<>> declared_;
    RWWString leadingText_;
    QLStringTable ignored_;
};
