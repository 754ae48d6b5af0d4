#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

// What the fuzzers share.
namespace fuzz {

inline void Expect(bool holds) {
    if (!holds) std::abort();
}

// Inputs of odd length are one byte a unit, so that plain texts can be grown too; the others are two, the low one
// first.
inline std::wstring TextOf(const std::uint8_t* data, std::size_t size) {
    if (size % 2 != 0) return {data, data + size};
    std::wstring text;
    for (std::size_t i = 0; i < size; i += 2) text += static_cast<wchar_t>(data[i] | data[i + 1] << 8);
    return text;
}

}  // namespace fuzz
