#include "shell/greyed_image.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/unique_handle.h"
#include "platform/win32.h"
#include "shell/grey_pixels.h"

namespace {

constexpr std::size_t kPixel = 3;

struct BitmapTraits {
    using Handle = HBITMAP;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle bitmap) noexcept { ::DeleteObject(bitmap); }
};
using UniqueBitmap = ql::UniqueHandle<BitmapTraits>;

struct MemoryDcTraits {
    using Handle = HDC;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle dc) noexcept { ::DeleteDC(dc); }
};
using UniqueMemoryDc = ql::UniqueHandle<MemoryDcTraits>;

struct Size {
    int width;
    int height;
};

std::optional<Size> SizeOf(HBITMAP bitmap) {
    BITMAP measures;
    if (::GetObjectType(bitmap) != OBJ_BITMAP || !::GetObjectW(bitmap, sizeof measures, &measures))
        return std::nullopt;
    return Size{measures.bmWidth, measures.bmHeight};
}

BITMAPINFO Format(Size size) {
    BITMAPINFO format = {};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = size.width;
    format.bmiHeader.biHeight = size.height;
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 8 * kPixel;
    format.bmiHeader.biCompression = BI_RGB;
    return format;
}

// A section of 24 bits; its rows stand bottom-up.
class Picture {
  public:
    explicit Picture(Size size) : size_(size) {
        const BITMAPINFO format = Format(size);
        void* bits = nullptr;
        bitmap_.reset(::CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0));
        bits_ = static_cast<std::uint8_t*>(bits);
    }

    std::uint8_t* Row(int row) const noexcept { return bits_ + static_cast<std::size_t>(row) * Stride(); }
    HBITMAP get() const noexcept { return bitmap_.get(); }
    HBITMAP release() noexcept { return bitmap_.release(); }

    // The pixels of a bitmap of the same size.
    bool Read(HBITMAP bitmap) {
        BITMAPINFO format = Format(size_);
        const UniqueMemoryDc dc(::CreateCompatibleDC(nullptr));
        return bits_ && ::GetDIBits(dc.get(), bitmap, 0, static_cast<UINT>(size_.height), bits_, &format,
                                    DIB_RGB_COLORS) == size_.height;
    }

    // The rows of another picture of the same width from the given one on, counted from the bottom.
    bool ReadRows(const Picture& other, int firstRow) {
        if (bits_) std::copy_n(other.Row(firstRow), static_cast<std::size_t>(size_.height) * Stride(), bits_);
        return bits_ != nullptr;
    }

    void Grey() {
        for (int row = 0; row < size_.height; ++row)
            ql::GreyPixels(Row(row), static_cast<std::size_t>(size_.width));
    }

    // Black where the other picture, of the same size, is not.
    void BlackenWhereSet(const Picture& mask) {
        for (int row = 0; row < size_.height; ++row) {
            std::uint8_t* const pixels = Row(row);
            const std::uint8_t* const masks = mask.Row(row);
            for (std::size_t i = 0; i < static_cast<std::size_t>(size_.width) * kPixel; ++i)
                if (masks[i]) pixels[i] = 0;
        }
    }

    // The same in one bit, white as 1.
    UniqueBitmap Monochrome() const {
        UniqueBitmap bitmap(::CreateBitmap(size_.width, size_.height, 1, 1, nullptr));
        const BITMAPINFO format = Format(size_);
        const UniqueMemoryDc dc(::CreateCompatibleDC(nullptr));
        if (!::SetDIBits(dc.get(), bitmap.get(), 0, static_cast<UINT>(size_.height), bits_, &format,
                         DIB_RGB_COLORS)) {
            bitmap.reset();
        }
        return bitmap;
    }

  private:
    std::size_t Stride() const noexcept {
        return (static_cast<std::size_t>(size_.width) * kPixel + 3) / 4 * 4;
    }

    Size size_;
    UniqueBitmap bitmap_;
    std::uint8_t* bits_ = nullptr;  // the bitmap's
};

// The system's description of an icon, its bitmaps owned.
struct IconParts {
    explicit IconParts(HICON icon) {
        if (!icon || !::GetIconInfo(icon, &info)) return;
        mask.reset(info.hbmMask);
        colors.reset(info.hbmColor);
    }

    ICONINFO info = {};
    UniqueBitmap mask;
    UniqueBitmap colors;
};

}  // namespace

HBITMAP CreateGreyedBitmap(HBITMAP bitmap) {
    const std::optional<Size> size = SizeOf(bitmap);
    if (!size) return nullptr;
    Picture picture(*size);
    if (!picture.Read(bitmap)) return nullptr;
    picture.Grey();
    return picture.release();
}

// An icon without colours has black and white below the mask proper, in the same bitmap.
HICON CreateGreyedIcon(HICON icon) {
    IconParts parts(icon);
    const std::optional<Size> maskSize = SizeOf(parts.mask.get());
    if (!maskSize) return nullptr;
    Picture halves(*maskSize);
    const Size size = {maskSize->width, parts.colors ? maskSize->height : maskSize->height / 2};
    Picture mask(size);
    Picture colors(size);
    if (!halves.Read(parts.mask.get()) || !mask.ReadRows(halves, maskSize->height - size.height))
        return nullptr;
    if (!(parts.colors ? colors.Read(parts.colors.get()) : colors.ReadRows(halves, 0))) return nullptr;
    colors.Grey();
    colors.BlackenWhereSet(mask);
    const UniqueBitmap monochrome = mask.Monochrome();
    if (!monochrome) return nullptr;
    parts.info.hbmMask = monochrome.get();
    parts.info.hbmColor = colors.get();
    return ::CreateIconIndirect(&parts.info);
}
