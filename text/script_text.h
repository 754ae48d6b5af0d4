#pragma once

#include "platform/export.h"
#include "rw/wide_string.h"

// Text for script code. Null texts are empty; all functions may be called from any thread. The answer is
// empty when memory ends.

// The identifier for a variable's name: ASCII letters and digits stay, "$" becomes "$$", and any other unit
// becomes "$u" and four upper-case hexadecimal digits when it is above 255, else "$" and two. Kept on
// purpose: below 16 the first of the two is a blank, as in "$ 9" for a tab. With a prefix that is not empty,
// the escaped prefix and "_" come first.
QL_API RWWString QLToJSVarName(ql::TextView name, ql::TextView prefix);

// Undoes the escaping; a prefix and its "_" stay. Lower-case digits are read too, and what is no escape
// stands as it is.
QL_API RWWString JSToQLVarName(ql::TextView name);

// Makes text safe inside a quoted script string (markup false) or inside markup (markup true).
//
// In both: a line feed becomes newlineText, a carriage return with its line feed crLfText, an apostrophe
// apostropheText, a double quote quoteText. The written escapes are read as well: \n becomes newlineText,
// \r\n crLfText, \2 stays; any other backslash is doubled, also that of \r alone. Script only: "</script>",
// in lower case exactly, becomes </" + "script> so that it does not end the block it is in. Markup only: "&",
// "<" and ">" become entities, and U+2028 the six characters "\u2028".
//
// A carriage return alone, and the zero units of the text, stay as they are.
QL_API RWWString EscapeIllegalChars(const RWWString& text, ql::TextView newlineText, ql::TextView crLfText,
                                    ql::TextView apostropheText, bool markup, ql::TextView quoteText);
