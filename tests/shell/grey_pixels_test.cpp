#include "shell/grey_pixels.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

namespace {

TEST(GreyPixels, AreLuminanceHalfWayToWhite) {
    const unsigned kCases[][4] = {{0, 0, 0, 128},       {255, 255, 255, 255}, {255, 0, 0, 142},
                                  {0, 255, 0, 202},     {0, 0, 255, 166},     {128, 128, 128, 192},
                                  {200, 200, 200, 228}, {1, 2, 3, 129}};
    for (const auto& [blue, green, red, grey] : kCases) EXPECT_EQ(grey, ql::GreyOf(blue, green, red)) << grey;
}

// Every count crosses from blocks to single pixels elsewhere; the sanitizers see to it that no byte beyond
// the last is read or written.
TEST(GreyPixels, OfAnyCountAreGreyOneByOne) {
    std::mt19937 random(7);
    for (std::size_t count = 0; count <= 70; ++count) {
        const std::size_t bytes = 3 * count;
        const auto pixels = std::make_unique<std::uint8_t[]>(bytes);
        std::vector<std::uint8_t> expected;
        for (std::size_t i = 0; i < bytes; ++i) pixels[i] = static_cast<std::uint8_t>(random());
        for (std::size_t i = 0; i < bytes; i += 3)
            expected.insert(expected.end(), 3, ql::GreyOf(pixels[i], pixels[i + 1], pixels[i + 2]));
        ql::GreyPixels(pixels.get(), count);
        EXPECT_EQ(expected, std::vector<std::uint8_t>(pixels.get(), pixels.get() + bytes)) << count;
    }
}

}  // namespace
