#include "shell/greyed_image.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/win32.h"
#include "shell/grey_pixels.h"

namespace {

using Pixels = std::vector<std::uint32_t>;  // 0xRRGGBB, row by row from the top

constexpr std::uint32_t kBlack = 0, kWhite = 0xFFFFFF, kMagenta = 0xFF00FF;

std::uint32_t GreyOf(std::uint32_t color) {
    return 0x010101u * static_cast<unsigned>(ql::GreyOf(color & 0xFF, color >> 8 & 0xFF, color >> 16));
}

struct Frees {
    void operator()(HBITMAP bitmap) const { ::DeleteObject(bitmap); }
    void operator()(HICON icon) const { ::DestroyIcon(icon); }
};
using Bitmap = std::unique_ptr<HBITMAP__, Frees>;
using Icon = std::unique_ptr<HICON__, Frees>;

HDC Memory() {
    static const HDC dc = ::CreateCompatibleDC(nullptr);
    return dc;
}

BITMAPINFO Layout(int width, int height, WORD bits) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, width, height, 1, bits, BI_RGB, 0, 0, 0, 0, 0};
    return info;
}

Bitmap BitmapOf(const Pixels& pixels, int width, WORD bits) {
    const int height = static_cast<int>(pixels.size()) / width;
    const BITMAPINFO own = Layout(width, height, bits), fromTheTop = Layout(width, -height, 32);
    void* memory = nullptr;
    Bitmap bitmap(::CreateDIBSection(nullptr, &own, DIB_RGB_COLORS, &memory, nullptr, 0));
    EXPECT_EQ(height, ::SetDIBits(Memory(), bitmap.get(), 0, static_cast<UINT>(height), pixels.data(),
                                  &fromTheTop, DIB_RGB_COLORS));
    return bitmap;
}

Pixels PixelsOf(const Bitmap& bitmap, int width, int height) {
    Pixels pixels(static_cast<std::size_t>(width * height));
    BITMAPINFO fromTheTop = Layout(width, -height, 32);
    EXPECT_EQ(height, ::GetDIBits(Memory(), bitmap.get(), 0, static_cast<UINT>(height), pixels.data(),
                                  &fromTheTop, DIB_RGB_COLORS));
    for (std::uint32_t& pixel : pixels) pixel &= 0xFFFFFF;
    return pixels;
}

// While the work is done the bitmap is selected.
template <class Work>
auto Selected(const Bitmap& bitmap, Work work) {
    const HGDIOBJ before = ::SelectObject(Memory(), bitmap.get());
    const auto result = work();
    ::SelectObject(Memory(), before);
    return result;
}

TEST(GreyedBitmap, HasTheGreyOfEveryPixelInTwentyFourBits) {
    for (const WORD bits : {WORD{24}, WORD{32}}) {
        for (const int width : {1, 5, 6, 7, 8, 33}) {
            Pixels colors, greys;
            for (unsigned i = 0; i < 9u * static_cast<unsigned>(width); ++i) {
                colors.push_back(i * 0x355B25 & 0xFFFFFF);
                greys.push_back(GreyOf(colors.back()));
            }
            const Bitmap original = BitmapOf(colors, width, bits);
            const Bitmap greyed(Selected(original, [&] { return CreateGreyedBitmap(original.get()); }));
            BITMAP made = {};
            EXPECT_TRUE(::GetObjectW(greyed.get(), sizeof made, &made));
            EXPECT_EQ(24, made.bmBitsPixel);
            EXPECT_EQ(width, made.bmWidth);
            EXPECT_EQ(9, made.bmHeight);
            EXPECT_EQ(greys, PixelsOf(greyed, width, 9)) << bits << ' ' << width;
            EXPECT_EQ(colors, PixelsOf(original, width, 9)) << bits << ' ' << width;
        }
    }
}

// What is made of an icon or cursor. Rows of the mask are two bytes, of which the first four bits count.
Icon GreyedIcon(const std::uint8_t* mask, int maskHeight, HBITMAP colors, bool isIcon = true) {
    const Bitmap maskBitmap(::CreateBitmap(4, maskHeight, 1, 1, mask));
    ICONINFO info = {isIcon, 3, 1, maskBitmap.get(), colors};
    const Icon icon(::CreateIconIndirect(&info));
    return Icon(CreateGreyedIcon(icon.get()));
}

Pixels Drawn(const Icon& icon, std::uint32_t background) {
    const Bitmap surface = BitmapOf(Pixels(8, background), 4, 32);
    EXPECT_TRUE(Selected(
        surface, [&] { return ::DrawIconEx(Memory(), 0, 0, icon.get(), 4, 2, 0, nullptr, DI_NORMAL); }));
    return PixelsOf(surface, 4, 2);
}

TEST(GreyedIcon, IsGreyWhereOpaqueAndClearWhereMasked) {
    const Pixels colors = {0xFF0000, 0x00FF00, 0x0000FF, kBlack, kWhite, kBlack, 0x010203, kWhite};
    const std::uint8_t mask[] = {0x10, 0, 0x80 | 0x40, 0};  // set: the last above, the first two below
    const Icon greyed = GreyedIcon(mask, 2, BitmapOf(colors, 4, 24).get());
    for (const std::uint32_t background : {kBlack, kWhite, kMagenta}) {
        Pixels expected;
        for (const std::uint32_t color : colors) expected.push_back(GreyOf(color));
        for (const std::size_t masked : {3u, 4u, 5u}) expected[masked] = background;
        EXPECT_EQ(expected, Drawn(greyed, background)) << background;
    }
}

TEST(GreyedIcon, OfBlackAndWhiteIsGreyToo) {
    // Above the mask, below black and white: black, white, clear, inverting in the first row.
    const std::uint8_t halves[] = {0x30, 0, 0x00, 0, 0x50, 0, 0xf0, 0};
    const Icon greyed = GreyedIcon(halves, 4, nullptr);
    const std::uint32_t black = GreyOf(kBlack);
    const Pixels expected = {black, kWhite, kMagenta, kMagenta, kWhite, kWhite, kWhite, kWhite};
    EXPECT_EQ(expected, Drawn(greyed, kMagenta));
}

TEST(GreyedIcon, KeepsACursorsHotSpot) {
    const std::uint8_t opaque[4] = {};
    const Icon greyed = GreyedIcon(opaque, 2, BitmapOf(Pixels(8), 4, 24).get(), false);
    ICONINFO info = {};
    EXPECT_TRUE(::GetIconInfo(greyed.get(), &info));
    EXPECT_FALSE(info.fIcon);
    EXPECT_EQ(3U, info.xHotspot);
    EXPECT_EQ(1U, info.yHotspot);
    const Bitmap itsMask(info.hbmMask), itsColors(info.hbmColor);
}

TEST(GreyedImage, OfNoImageIsNull) {
    EXPECT_EQ(nullptr, CreateGreyedBitmap(nullptr));
    EXPECT_EQ(nullptr, CreateGreyedIcon(nullptr));
    const HBITMAP gone = ::CreateBitmap(2, 2, 1, 24, nullptr);
    ::DeleteObject(gone);
    EXPECT_EQ(nullptr, CreateGreyedBitmap(gone));
    for (const int other : {SYSTEM_FONT, DEFAULT_PALETTE, BLACK_PEN, WHITE_BRUSH})
        EXPECT_EQ(nullptr, CreateGreyedBitmap(static_cast<HBITMAP>(::GetStockObject(other)))) << other;
}

}  // namespace
