#pragma once

#include <cstddef>
#include <cstdint>

namespace ql {

// The grey that a disabled image shows a colour in: its luminance (ITU-R BT.601), moved half way to white, so
// that a black glyph is as visibly disabled as a coloured one. Black is 128, white 255.
constexpr std::uint8_t GreyOf(unsigned blue, unsigned green, unsigned red) noexcept {
    return static_cast<std::uint8_t>((29 * blue + 150 * green + 77 * red + (256u << 8)) >> 9);
}

// Greys pixels of three bytes each: blue, green, red.
void GreyPixels(std::uint8_t* pixels, std::size_t count) noexcept;

}  // namespace ql
