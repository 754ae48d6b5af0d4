// Fits a path to a width by a made-up measure: the shortening must end, keep both ends of the path and stop as soon as
// the text fits. The first bytes are the width and what seeds the measure, the rest is the path.
#include "files/path_fitting.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

void Expect(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    const int width = data[0] * 8 - 64;
    const unsigned seed = data[1], failsAt = data[2];
    const std::wstring path(data + 3, data + size);
    const auto widthOf = [seed](const std::wstring& text) {
        unsigned sum = 0;
        for (const wchar_t unit : text) sum += (static_cast<unsigned>(unit) * (seed | 1U)) % 16U;
        return static_cast<int>(sum);
    };
    unsigned calls = 0;
    const auto measure = [&](const std::wstring& text) {
        return ++calls == failsAt ? std::nullopt : std::optional(widthOf(text));
    };
    std::wstring text = path;
    ql::FitPath(text, width, measure);

    const auto separators = static_cast<unsigned>(std::ranges::count(path, L'\\'));
    Expect(calls <= separators + 2);
    if (text == path) return 0;
    const std::size_t first = path.find(L'\\'), tail = text.find(L'\\', first + 1);
    Expect(text.compare(0, first + 4, path.substr(0, first + 1) + L"...") == 0);
    Expect(tail == first + 4 && path.ends_with(text.substr(tail)));
    Expect(failsAt == calls || widthOf(text) <= width - 2 || !ql::ShortenPath(text));
    return 0;
}
