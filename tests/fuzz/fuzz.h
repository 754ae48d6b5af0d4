#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

// What the fuzzers share. Each is one file, which defines Try.

inline void Expect(bool holds) {
    if (!holds) std::abort();
}

using Input = std::span<const std::uint8_t>;

// As many bytes as there are, taken off the input.
inline Input Take(Input& input, std::size_t count) {
    const Input taken = input.first(std::min(count, input.size()));
    input = input.subspan(taken.size());
    return taken;
}
inline std::uint8_t TakeByte(Input& input) {
    const Input taken = Take(input, 1);
    return taken.empty() ? std::uint8_t{0} : taken[0];
}

// Inputs of odd length are one byte a unit, so that plain texts can be grown too; the others are two, the low
// one first.
inline std::wstring TextOf(Input input) {
    if (input.size() % 2 != 0) return {input.begin(), input.end()};
    std::wstring text;
    for (std::size_t i = 0; i < input.size(); i += 2)
        text += static_cast<wchar_t>(input[i] | input[i + 1] << 8);
    return text;
}

// Each line is a text of one byte a unit, which ends at its first zero.
template <class Check>
void ForEachLine(Input input, Check check) {
    while (!input.empty()) {
        const auto length = std::ranges::find(input, std::uint8_t{'\n'}) - input.begin();
        const Input line = Take(input, static_cast<std::size_t>(length));
        TakeByte(input);
        check(std::wstring(line.begin(), std::ranges::find(line, std::uint8_t{0})));
    }
}

void Try(Input input);

// NOLINTNEXTLINE(misc-definitions-in-headers)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Try({data, size});
    return 0;
}
