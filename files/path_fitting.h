#pragma once

#include <optional>
#include <string>

// Shortening a path until it fits a width, whatever measures it.
namespace ql {

// Replaces the component behind the first backslash by an ellipsis, or takes the next component into the
// ellipsis that is there. False, and the text as it was, when nothing can be taken away.
bool ShortenPath(std::wstring& text);

// Where the ellipsis of a shortened path ends; nothing when it has none that takes components in.
std::optional<std::size_t> EllipsisEnd(const std::wstring& text) noexcept;

// Shortens the text component by component until it is at least two units narrower than `width`, as far as
// that goes. `measure` answers the width of a text in an optional, empty when it cannot be measured, which
// ends the shortening. Measuring each component once tells how many have to go at least: the time grows with
// the text, not with its square.
template <class Measure>
void FitPath(std::wstring& text, int width, Measure measure) {
    const long long room = width - 2LL;
    std::optional<int> measured = measure(text);
    while (measured && *measured > room) {
        if (!ShortenPath(text)) return;
        measured = measure(text);
        const std::optional<std::size_t> begin = EllipsisEnd(text);
        if (!measured || !begin) continue;
        std::size_t end = *begin;
        for (long long excess = *measured - room; excess > 0;) {
            const std::size_t next = text.find(L'\\', end + 1);
            if (next == std::wstring::npos) break;
            const std::optional<int> component = measure(text.substr(end, next - end));
            if (!component) return;
            excess -= *component + 1LL;  // a text may be that much wider than its rounded parts
            end = next;
        }
        if (end == *begin) continue;
        text.erase(*begin, end - *begin);
        measured = measure(text);
    }
}

}  // namespace ql
