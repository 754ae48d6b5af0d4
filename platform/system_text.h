#pragma once

#include <string>

#include "platform/win32.h"

namespace ql {

// A text of any length that the system writes into a buffer. `ask` is given the buffer and its size, and
// answers the text's length, or what is no less than the size where the text does not fit. Another thread may
// lengthen the text in between.
template <class Ask>
std::wstring SystemText(Ask ask) {
    for (DWORD size = MAX_PATH;; size *= 2) {
        std::wstring text(size, L'\0');
        const DWORD length = ask(text.data(), size);
        if (length >= size) continue;
        text.resize(length);
        return text;
    }
}

}  // namespace ql
