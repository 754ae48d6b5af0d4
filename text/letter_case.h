#pragma once

#include "platform/export.h"
#include "rw/wide_string.h"

// The case pattern of a text.
enum CaseType : int {
    CASE_LOWER = 1,            // all lower case
    CASE_SENTENCE = 2,         // the first character capital, the rest lower
    CASE_TITLE = 3,            // every word capitalised
    CASE_UPPER = 4,            // all capitals
    CASE_FIRST_CAPITAL = 5,    // the first character capital, the rest as it is
    CASE_SPACED_CAPITALS = 6,  // capitals with blanks between them
    CASE_UNKNOWN = 7,          // left as it is
};

// Letters and their case are those of the system's fixed tables, unit by unit, whatever the locale. Both
// functions may be called from any thread.

// Classifies a text by a few signs, not by every letter: whether it starts with a letter, the case of the
// first two letters, blanks between the first three capitals, and the case of the letters that start the
// second and the third word. So "Hello" and "Hello World foo" are titles, "Hello world Foo" is
// CASE_FIRST_CAPITAL and "HELLO world" CASE_UPPER. A text that starts with no letter, with a letter that has
// no case, or like "eBook", is CASE_UNKNOWN.
QL_API CaseType GetCase(const RWWString& text);

// Rewrites a text in a case pattern. In capitals every "ß" becomes "SS"; spaced capitals have one blank
// between every two characters and none at the end. For titles a word starts at a letter that follows neither
// a letter nor a straight apostrophe: "o'neil smith" becomes "O'neil Smith". CASE_UNKNOWN, like any other
// number, changes nothing. The answer is empty when memory ends.
QL_API RWWString ChangeCase(const RWWString& text, CaseType type);
