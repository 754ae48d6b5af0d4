#pragma once

#include "platform/export.h"
#include "rw/wide_string.h"

// Splits at the first ":": `name` becomes what stands before it and `rest` what follows. Without a ":" `name`
// becomes the whole text and `rest` empty. The text may lie in `name` or `rest` itself; null is the empty
// text. Both stay as they are when memory ends.
QL_API void SplitField(ql::TextView text, RWWString& name, RWWString& rest);

// The texts that booleans are stored as: "True" and "False".
extern QL_API const wchar_t g_trueStr[];
extern QL_API const wchar_t g_falseStr[];

// "True", "yes" and "on" are true, "False", "no" and "off" are false, in any case of letters. Any other text,
// also one with blanks around such a word, gives defaultValue.
QL_API bool StrToBool(const RWWString& text, bool defaultValue);
