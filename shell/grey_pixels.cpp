#include "shell/grey_pixels.h"

#include <emmintrin.h>

#include <algorithm>

namespace ql {

namespace {

constexpr std::size_t kPixel = 3;
constexpr std::size_t kPixelsAtOnce = 4;

__m128i Load(const std::uint8_t* bytes) noexcept {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

// Twelve bytes of pixels spread to four lanes: blue, green, red and a byte of no meaning in each.
__m128i Spread(__m128i packed) noexcept {
    const __m128i pairs = _mm_unpacklo_epi64(packed, _mm_srli_si128(packed, 2 * kPixel));
    const __m128i odd = _mm_slli_epi64(_mm_srli_epi64(pairs, 24), 32);
    const __m128i even = _mm_and_si128(pairs, _mm_set_epi32(0, -1, 0, -1));
    return _mm_or_si128(even, odd);
}

// GreyOf in each lane.
__m128i GreyLanes(__m128i lanes) noexcept {
    const __m128i blueAndRed = _mm_and_si128(lanes, _mm_set1_epi32(0x00ff00ff));
    const __m128i green = _mm_and_si128(_mm_srli_epi32(lanes, 8), _mm_set1_epi32(0xff));
    const __m128i sum = _mm_add_epi32(_mm_madd_epi16(blueAndRed, _mm_set1_epi32(77 << 16 | 29)),
                                      _mm_madd_epi16(green, _mm_set1_epi32(150)));
    return _mm_srli_epi32(_mm_add_epi32(sum, _mm_set1_epi32(256 << 8)), 9);
}

// The grey of each lane three times, as twelve bytes; the other four are zero.
__m128i Pack(__m128i greys) noexcept {
    const __m128i twice = _mm_or_si128(greys, _mm_slli_epi32(greys, 8));
    const __m128i pixels = _mm_or_si128(twice, _mm_slli_epi32(greys, 16));
    const __m128i even = _mm_and_si128(pixels, _mm_set_epi32(0, -1, 0, -1));
    const __m128i odd = _mm_slli_epi64(_mm_srli_epi64(pixels, 32), 24);
    const __m128i pairs = _mm_or_si128(even, odd);
    return _mm_or_si128(_mm_move_epi64(pairs), _mm_slli_si128(_mm_srli_si128(pairs, 8), 2 * kPixel));
}

}  // namespace

void GreyPixels(std::uint8_t* pixels, std::size_t count) noexcept {
    // Each round reads sixteen bytes and changes twelve of them.
    const std::uint8_t* const end = pixels + count * kPixel;
    for (; end - pixels >= 16; pixels += kPixelsAtOnce * kPixel) {
        const __m128i packed = Load(pixels);
        const __m128i rest = _mm_and_si128(packed, _mm_set_epi32(-1, 0, 0, 0));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels),
                         _mm_or_si128(Pack(GreyLanes(Spread(packed))), rest));
    }
    for (; pixels != end; pixels += kPixel)
        std::fill_n(pixels, kPixel, GreyOf(pixels[0], pixels[1], pixels[2]));
}

}  // namespace ql
