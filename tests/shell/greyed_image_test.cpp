#include "shell/greyed_image.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/win32.h"
#include "shell/grey_pixels.h"

namespace {

using Pixels = std::vector<COLORREF>;  // row by row from the top

constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kMagenta = RGB(255, 0, 255);

COLORREF GreyOf(COLORREF color) {
    const unsigned grey = ql::GreyOf(GetBValue(color), GetGValue(color), GetRValue(color));
    return RGB(grey, grey, grey);
}

// A surface to paint on and look at, as wide and high as the test says.
class Surface {
  public:
    Surface(int width, int height, WORD bits = 32) : width_(width), height_(height) {
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof info.bmiHeader, width, height, 1, bits, BI_RGB, 0, 0, 0, 0, 0};
        void* memory = nullptr;
        bitmap_ = ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &memory, nullptr, 0);
        dc_ = ::CreateCompatibleDC(nullptr);
        before_ = ::SelectObject(dc_, bitmap_);
    }
    ~Surface() {
        Deselect();
        ::DeleteDC(dc_);
        ::DeleteObject(bitmap_);
    }
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    HDC dc() const { return dc_; }
    HBITMAP bitmap() const { return bitmap_; }  // which stays selected
    void Set(const Pixels& pixels) {
        for (int i = 0; i < width_ * height_; ++i)
            ::SetPixelV(dc_, i % width_, i / width_, pixels[static_cast<std::size_t>(i)]);
    }
    Pixels Get() const {
        Pixels pixels;
        for (int i = 0; i < width_ * height_; ++i) pixels.push_back(::GetPixel(dc_, i % width_, i / width_));
        return pixels;
    }
    HBITMAP Deselect() {
        ::SelectObject(dc_, before_);
        return bitmap_;
    }

  private:
    int width_;
    int height_;
    HBITMAP bitmap_;
    HDC dc_;
    HGDIOBJ before_;
};

Pixels PixelsOf(HBITMAP bitmap, int width, int height) {
    Surface surface(width, height);
    const HDC source = ::CreateCompatibleDC(nullptr);
    const HGDIOBJ before = ::SelectObject(source, bitmap);
    ::BitBlt(surface.dc(), 0, 0, width, height, source, 0, 0, SRCCOPY);
    ::SelectObject(source, before);
    ::DeleteDC(source);
    return surface.Get();
}

Pixels Colorful(int width, int height) {
    Pixels pixels;
    for (int i = 0; i < width * height; ++i) pixels.push_back(RGB(i * 37 % 256, i * 91 % 256, i * 53 % 256));
    return pixels;
}

Pixels Greyed(Pixels pixels) {
    for (COLORREF& pixel : pixels) pixel = GreyOf(pixel);
    return pixels;
}

TEST(GreyedBitmap, HasTheGreyOfEveryPixelInTwentyFourBits) {
    for (const WORD bits : {WORD{24}, WORD{32}}) {
        for (const int width : {1, 5, 6, 7, 8, 33}) {
            Surface surface(width, 9, bits);
            surface.Set(Colorful(width, 9));
            const HBITMAP greyed = CreateGreyedBitmap(surface.bitmap());
            BITMAP made = {};
            EXPECT_TRUE(::GetObjectW(greyed, sizeof made, &made));
            EXPECT_EQ(24, made.bmBitsPixel);
            EXPECT_EQ(width, made.bmWidth);
            EXPECT_EQ(9, made.bmHeight);
            EXPECT_EQ(Greyed(Colorful(width, 9)), PixelsOf(greyed, width, 9)) << bits << ' ' << width;
            EXPECT_EQ(Colorful(width, 9), PixelsOf(surface.Deselect(), width, 9)) << "the original";
            ::DeleteObject(greyed);
        }
    }
}

struct DestroysIcon {
    void operator()(HICON icon) const { ::DestroyIcon(icon); }
};
using Icon = std::unique_ptr<HICON__, DestroysIcon>;

// What is made of an icon or cursor. Rows of the mask are two bytes, of which the first four bits count.
Icon GreyedIcon(const std::uint8_t* mask, int maskHeight, HBITMAP colors, bool isIcon = true) {
    const HBITMAP maskBitmap = ::CreateBitmap(4, maskHeight, 1, 1, mask);
    ICONINFO info = {isIcon, 3, 1, maskBitmap, colors};
    const Icon icon(::CreateIconIndirect(&info));
    ::DeleteObject(maskBitmap);
    Icon greyed(CreateGreyedIcon(icon.get()));
    EXPECT_TRUE(icon);
    EXPECT_TRUE(greyed);
    return greyed;
}

Pixels Drawn(HICON icon, COLORREF background) {
    Surface surface(4, 2);
    surface.Set(Pixels(8, background));
    EXPECT_TRUE(::DrawIconEx(surface.dc(), 0, 0, icon, 4, 2, 0, nullptr, DI_NORMAL));
    return surface.Get();
}

TEST(GreyedIcon, IsGreyWhereOpaqueAndClearWhereMasked) {
    const Pixels colors = {RGB(255, 0, 0), RGB(0, 255, 0), RGB(0, 0, 255), kBlack,
                           kWhite,         kBlack,         RGB(1, 2, 3),   kWhite};
    const std::uint8_t mask[] = {0x10, 0, 0x80 | 0x40, 0};  // set: the last above, the first two below
    Surface surface(4, 2, 24);
    surface.Set(colors);
    const Icon greyed = GreyedIcon(mask, 2, surface.Deselect());
    for (const COLORREF background : {kBlack, kWhite, kMagenta}) {
        const Pixels expected = {GreyOf(colors[0]), GreyOf(colors[1]), GreyOf(colors[2]), background,
                                 background,        background,        GreyOf(colors[6]), GreyOf(colors[7])};
        EXPECT_EQ(expected, Drawn(greyed.get(), background)) << background;
    }
}

TEST(GreyedIcon, OfBlackAndWhiteIsGreyToo) {
    // Above the mask, below black and white: black, white, clear, inverting in the first row.
    const std::uint8_t halves[] = {0x30, 0, 0x00, 0, 0x50, 0, 0xf0, 0};
    const Icon greyed = GreyedIcon(halves, 4, nullptr);
    const COLORREF black = GreyOf(kBlack);
    const Pixels expected = {black, kWhite, kMagenta, kMagenta, kWhite, kWhite, kWhite, kWhite};
    EXPECT_EQ(expected, Drawn(greyed.get(), kMagenta));
}

TEST(GreyedIcon, KeepsACursorsHotSpot) {
    Surface surface(4, 2, 24);
    const std::uint8_t opaque[4] = {};
    const Icon greyed = GreyedIcon(opaque, 2, surface.Deselect(), false);
    ICONINFO info = {};
    EXPECT_TRUE(::GetIconInfo(greyed.get(), &info));
    EXPECT_FALSE(info.fIcon);
    EXPECT_EQ(3U, info.xHotspot);
    EXPECT_EQ(1U, info.yHotspot);
    ::DeleteObject(info.hbmMask);
    ::DeleteObject(info.hbmColor);
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
