#pragma once

#include "names/file_name.h"
#include "platform/export.h"
#include "rw/wide_string.h"

// A file name with the switches that follow it on a command line.
//
//     text                            name                switches
//     "C:\My Files\a.qft" /ni /sa     C:\My Files\a.qft   /ni /sa
//     C:\Files\a.qft /ni              C:\Files\a.qft      /ni
//     /ni                                                 /ni
//     C:\a/b.txt /ni                  C:\a/b.txt /ni
//
// Kept on purpose:
//  - Of a text without quotes only the first slash is looked at: inside a word it is part of the name, and so
//    is everything after it.
//  - Assigning parses the other's name, as for QLFileName; its switches are copied.
//
// A null pointer stands for the empty text. Threads and memory: as for QLFileName.
class QL_API QLCmdLine : public QLFileName {
  public:
    QLCmdLine() noexcept = default;
    // The text of a line, split as above.
    QLCmdLine(const wchar_t* text);
    template <ql::CountedText Text>
    QLCmdLine(const Text& text) {
        SetCmdLine(text);
    }

    // The parts as QLFileName takes them, and switches, whose surrounding blanks are dropped.
    QLCmdLine(ql::TextView path, ql::TextView name, ql::TextView ext, ql::TextView switches);
    QLCmdLine(const QLFileName& name) : QLFileName(name) {}  // every field, no switches
    // A copy has every field; assigning parses, as said above.
    QLCmdLine(const QLCmdLine& other) noexcept;
    QLCmdLine& operator=(const QLCmdLine& other);

    // The name in its form for command lines, and the switches after a blank when there are any. A name with
    // a slash in it is not read back from that text.
    RWWString GetCmdLine() const override;
    int IsNull() const override;  // neither a name nor switches
    void Reset() override;        // back to neither

    // Replaces name and switches by those of a line's text, split as above.
    void SetCmdLine(ql::TextView text);

    RWWString GetSwitches() const;                        // as one text; empty when there are none
    void SetSwitches(ql::TextView switches);              // blanks around them are dropped
    void AppendSwitches(ql::TextView switches);           // after a blank, as they are
    void ClearSwitches() noexcept { switches_.clear(); }  // the name stays

    // The names' order; for equal names that of the switches, ignoring case. Of a line and a QLFileName the
    // names alone are compared.
    int CompareTo(const QLCmdLine& other) const noexcept;
    bool operator==(const QLCmdLine& other) const noexcept { return CompareTo(other) == 0; }
    bool operator==(const QLFileName& name) const noexcept { return QLFileName::CompareTo(name) == 0; }

  private:
    friend struct ql::NameAccess;

    template <class Change>
    void TryTo(Change change) noexcept;

    RWWString switches_;
};
