// Greying 256 x 256 pixels beside a plain loop over them, and the whole bitmap beside one through the device
// context, pixel by pixel.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "platform/win32.h"
#include "shell/grey_pixels.h"
#include "shell/greyed_image.h"

namespace {

constexpr int kSide = 256;
constexpr std::size_t kBytes = std::size_t{3} * kSide * kSide;

// In place: the time does not depend on the colours.
template <class Grey>
void GreyInPlace(benchmark::State& state, Grey grey) {
    std::vector<std::uint8_t> pixels(kBytes);
    for (std::size_t i = 0; i < kBytes; ++i) pixels[i] = static_cast<std::uint8_t>(i * 37);
    for (auto _ : state) {
        grey(pixels.data());
        benchmark::DoNotOptimize(pixels.data());
        benchmark::ClobberMemory();
    }
}

void GreyBlocks(benchmark::State& state) {
    GreyInPlace(state, [](std::uint8_t* pixels) { ql::GreyPixels(pixels, kBytes / 3); });
}

void GreyOneByOne(benchmark::State& state) {
    GreyInPlace(state, [](std::uint8_t* pixels) {
        for (std::uint8_t* pixel = pixels; pixel != pixels + kBytes; pixel += 3)
            pixel[0] = pixel[1] = pixel[2] = ql::GreyOf(pixel[0], pixel[1], pixel[2]);
    });
}

HBITMAP NewBitmap(HDC dc) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, kSide, kSide, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    return ::CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
}

void GreyBitmap(benchmark::State& state) {
    const HBITMAP bitmap = NewBitmap(nullptr);
    for (auto _ : state) ::DeleteObject(CreateGreyedBitmap(bitmap));
    ::DeleteObject(bitmap);
}

void GreyThroughContext(benchmark::State& state) {
    const HDC from = ::CreateCompatibleDC(nullptr);
    const HDC to = ::CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = NewBitmap(nullptr);
    const HGDIOBJ before = ::SelectObject(from, bitmap);
    for (auto _ : state) {
        const HBITMAP greyed = NewBitmap(nullptr);
        const HGDIOBJ none = ::SelectObject(to, greyed);
        for (int i = 0; i < kSide * kSide; ++i) {
            const COLORREF color = ::GetPixel(from, i % kSide, i / kSide);
            const unsigned grey = ql::GreyOf(GetBValue(color), GetGValue(color), GetRValue(color));
            ::SetPixelV(to, i % kSide, i / kSide, RGB(grey, grey, grey));
        }
        ::SelectObject(to, none);
        ::DeleteObject(greyed);
    }
    ::SelectObject(from, before);
    ::DeleteObject(bitmap);
    ::DeleteDC(from);
    ::DeleteDC(to);
}

BENCHMARK(GreyBlocks)->Name("grey 256 x 256 pixels/ours");
BENCHMARK(GreyOneByOne)->Name("grey 256 x 256 pixels/plain loop");
BENCHMARK(GreyBitmap)->Name("grey a 256 x 256 bitmap/ours");
BENCHMARK(GreyThroughContext)->Name("grey a 256 x 256 bitmap/GetPixel and SetPixel");

}  // namespace
