#include "shell/grey_pixels.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstddef>

namespace ql {

namespace {

constexpr std::size_t kPixel = 3;
constexpr std::size_t kPair = 2 * kPixel;  // what one half of a register works on
constexpr std::size_t kFour = 4 * kPixel;
constexpr std::size_t kBlock = 4 * kFour;

// The words of the halves: blue, red of the first pixel, green of the second, and, moved up by a byte, green
// of the first, blue, red of the second. Two multiplications of pairs are the luminances in double words.
__m128i Luminances(__m128i pairs) noexcept {
    const __m128i low = _mm_set1_epi16(0xff);
    const __m128i factors = _mm_set_epi16(0, 150, 77, 29, 0, 150, 77, 29);
    const __m128i factorsOfMoved = _mm_set_epi16(77, 29, 150, 0, 77, 29, 150, 0);
    return _mm_add_epi32(_mm_madd_epi16(_mm_and_si128(pairs, low), factors),
                         _mm_madd_epi16(_mm_and_si128(_mm_slli_epi64(pairs, 8), low), factorsOfMoved));
}

// The greys of four pixels, six bytes in each half; the upper two bytes of a half are of no meaning.
__m128i GreyFour(const std::uint8_t* pixels) noexcept {
    const __m128i first = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixels));
    const __m128i second = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixels + kPair));
    const __m128i greys = _mm_srli_epi32(Luminances(_mm_unpacklo_epi64(first, second)), 9);
    const __m128i twice = _mm_or_si128(greys, _mm_srli_epi64(greys, 8));
    const __m128i most = _mm_or_si128(twice, _mm_slli_epi64(twice, 8));
    const __m128i all = _mm_or_si128(most, _mm_slli_epi64(greys, 16));
    return _mm_or_si128(all, _mm_set1_epi8(-128));
}

// Two bytes too many, which the next store corrects.
void Store(std::uint8_t* pixels, __m128i greys) noexcept {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(pixels), greys);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(pixels + kPair), _mm_unpackhi_epi64(greys, greys));
}

void StoreExactly(std::uint8_t* pixels, __m128i greys) noexcept {
    const __m128i second = _mm_unpackhi_epi64(greys, greys);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(pixels), greys);
    _mm_storeu_si32(pixels + kPair, second);
    _mm_storeu_si16(pixels + kPair + 4, _mm_srli_epi64(second, 32));
}

// All is read before anything is written: a load would wait for a store that it overlaps.
void GreyBlock(std::uint8_t* pixels) noexcept {
    const __m128i greys[] = {GreyFour(pixels), GreyFour(pixels + kFour), GreyFour(pixels + 2 * kFour),
                             GreyFour(pixels + 3 * kFour)};
    Store(pixels, greys[0]);
    Store(pixels + kFour, greys[1]);
    Store(pixels + 2 * kFour, greys[2]);
    StoreExactly(pixels + 3 * kFour, greys[3]);
}

}  // namespace

void GreyPixels(std::uint8_t* pixels, std::size_t count) noexcept {
    constexpr std::ptrdiff_t kRead = kBlock + 2;  // a half is read as eight bytes
    const std::uint8_t* const end = pixels + count * kPixel;
    for (; end - pixels >= kRead; pixels += kBlock) GreyBlock(pixels);
    for (; pixels != end; pixels += kPixel)
        std::fill_n(pixels, kPixel, GreyOf(pixels[0], pixels[1], pixels[2]));
}

}  // namespace ql
