#pragma once

#ifndef QL_FUZZER
#include <gtest/gtest.h>
#endif

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <span>
#include <string>
#include <vector>

// What the fuzzers share. Each is one file with one FUZZER, a function of its input: a program that searches
// for inputs that break it, and in the test program of its room a test of generated ones and, where that is
// built natively, of those that once broke something.

inline void Expect(bool holds, [[maybe_unused]] const char* file = __builtin_FILE(),
                   [[maybe_unused]] int line = __builtin_LINE()) {
    if (holds) return;
#ifdef QL_FUZZER
    std::abort();
#else
    ADD_FAILURE_AT(file, line) << "what must hold of every input does not";
#endif
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

// FUZZER(Name, head, pieces...): what generated inputs begin with and consist of, besides any bytes.
#ifdef QL_FUZZER
#define FUZZER(name, ...)                                                               \
    static void Try(Input input);                                                       \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) { \
        Try({data, size});                                                              \
        return 0;                                                                       \
    }                                                                                   \
    static void Try(Input input)
#else
#define FUZZER(name, ...)                  \
    static void Try(Input input);          \
    TEST(Generated, name) {                \
        TryGenerated(&Try, {__VA_ARGS__}); \
        TryKept(&Try, __FILE__);           \
    }                                      \
    static void Try(Input input)

inline void TryOne(void (*tryOne)(Input), const std::string& bytes) {
    tryOne({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    ASSERT_FALSE(testing::Test::HasFailure()) << testing::PrintToString(bytes);
}

// The same inputs every time, of odd lengths: one byte a unit.
inline void TryGenerated(void (*tryOne)(Input), const std::vector<std::string>& pieces) {
    std::minstd_rand random(7);  // NOLINT
    for (int i = 0; i < 1000; ++i) {
        std::string bytes = pieces.front();
        for (auto left = random() % 40; left > 0; --left) {
            const std::size_t piece = random() % (pieces.size() + 1);
            bytes += piece > 0 && piece < pieces.size() ? pieces[piece]
                                                        : std::string(1, static_cast<char>(random() >> 8));
        }
        if (bytes.size() % 2 == 0) bytes += ' ';
        ASSERT_NO_FATAL_FAILURE(TryOne(tryOne, bytes));
    }
}

// Those of NAME_fuzz.cpp lie in corpus/NAME.
inline void TryKept(void (*tryOne)(Input), const std::filesystem::path& source) {
    if constexpr (std::filesystem::path::preferred_separator == '\\') return;  // Wine has other paths
    const std::string stem = source.stem().string(), name = stem.substr(0, stem.rfind('_'));
    for (const auto& kept : std::filesystem::directory_iterator(source.parent_path() / "corpus" / name)) {
        std::ifstream file(kept.path(), std::ios::binary);
        ASSERT_NO_FATAL_FAILURE(TryOne(tryOne, {std::istreambuf_iterator<char>(file), {}}));
    }
}
#endif
