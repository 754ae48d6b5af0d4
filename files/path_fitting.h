#pragma once

#include <optional>
#include <string>

// Shortening a path until it fits a width, whatever measures it.
namespace ql {

// Replaces the component behind the first backslash by an ellipsis, or takes the next component into the ellipsis
// that is there. False, and the text as it was, when nothing can be taken away.
bool ShortenPath(std::wstring& text);

// Shortens the text until it is at least two units narrower than `width`, as far as that goes. `measure` answers the
// width of a text in an optional, empty when it cannot be measured, which ends the shortening.
template <class Measure>
void FitPath(std::wstring& text, int width, Measure measure) {
    for (std::optional<int> measured = measure(text); measured && *measured > width - 2LL;) {
        if (!ShortenPath(text)) return;
        measured = measure(text);
    }
}

}  // namespace ql
