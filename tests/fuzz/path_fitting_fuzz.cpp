// Fits a path to a width by a made-up measure, which cuts fractions off as a scaled device rounds: the
// shortening must end and stop at the first text that fits, as a component after the other would. The first
// bytes are the width and what seeds the measure, the rest is the path.
#include "files/path_fitting.h"
#include "tests/fuzz/fuzz.h"

FUZZER(PathFitting, "", "\\", "...", "\\...\\") {
    if (input.size() < 3) return;
    const int width = TakeByte(input) * 8 - 64;
    const unsigned seed = TakeByte(input), failsAt = TakeByte(input);
    const std::wstring path(input.begin(), input.end());
    const auto widthOf = [seed](const std::wstring& text) {
        unsigned sum = 0;
        for (const wchar_t unit : text) sum += (static_cast<unsigned>(unit) * (seed | 1U)) % 16U;
        return static_cast<int>(sum / (1 + seed % 4));
    };
    unsigned calls = 0;
    std::wstring text = path;
    ql::FitPath(text, width, [&](const std::wstring& tried) {
        return ++calls == failsAt ? std::nullopt : std::optional(widthOf(tried));
    });

    Expect(calls <= 2 * static_cast<unsigned>(std::ranges::count(path, L'\\')) + 2);
    std::wstring slowly = path;
    while (widthOf(slowly) > width - 2 && ql::ShortenPath(slowly)) continue;
    Expect(text == slowly || (failsAt != 0 && calls == failsAt));
}
