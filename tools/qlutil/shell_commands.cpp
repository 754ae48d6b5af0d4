#include <filesystem>
#include <string>

#include "platform/win32.h"
#include "shell/browse_for_folder.h"
#include "shell/greyed_image.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/text_file.h"

namespace {

Answer PickFolder(const Arguments& arguments) {
    const std::wstring start(arguments.Value(L"start").value_or(L""));
    std::error_code ignored;
    if (arguments.Has(L"start") && !std::filesystem::is_directory(start, ignored))
        return Answer::Failure(L"there is no folder " + start);
    CBrowseForFolder browser;
    browser.SetTitle(RWWString(arguments.Value(L"title").value_or(L"")));
    browser.SetStartFolder(start);
    switch (browser.Show()) {
        case CBrowseForFolder::Chosen: return Record{{L"folder", browser.GetFolder()}};
        case CBrowseForFolder::Cancelled: return Answer::Failure(L"no folder was picked");
        case CBrowseForFolder::Failed: break;
    }
    return Answer::Failure(L"the folder dialog cannot be opened");
}

// A bitmap that this program deletes.
class OwnBitmap {
  public:
    explicit OwnBitmap(HBITMAP bitmap) : bitmap_(bitmap) {
        if (!::GetObjectW(bitmap, sizeof section_, &section_)) section_ = {};
    }
    ~OwnBitmap() { ::DeleteObject(bitmap_); }
    OwnBitmap(const OwnBitmap&) = delete;
    OwnBitmap& operator=(const OwnBitmap&) = delete;

    HBITMAP get() const { return bitmap_; }
    const DIBSECTION& section() const { return section_; }  // all zero when it is none

  private:
    HBITMAP bitmap_;
    DIBSECTION section_ = {};
};

template <class Part>
void Append(std::string& bytes, const Part& part) {
    bytes.append(reinterpret_cast<const char*>(&part), sizeof part);
}

// The bytes of a bitmap file. The section has no palette.
std::string BitmapFile(const DIBSECTION& section) {
    constexpr DWORD kPixelsAt = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    const auto size = static_cast<DWORD>(section.dsBm.bmWidthBytes * section.dsBm.bmHeight);
    const BITMAPFILEHEADER header = {0x4d42, kPixelsAt + size, 0, 0, kPixelsAt};  // "BM"
    std::string bytes;
    Append(bytes, header);
    Append(bytes, section.dsBmih);
    return bytes.append(static_cast<const char*>(section.dsBm.bmBits), size);
}

Answer GreyImage(const Arguments& arguments) {
    const std::wstring source(arguments[0]);
    const OwnBitmap image(static_cast<HBITMAP>(
        ::LoadImageW(nullptr, source.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_CREATEDIBSECTION)));
    const OwnBitmap greyed(CreateGreyedBitmap(image.get()));
    if (!greyed.get()) return Answer::Failure(L"cannot read " + source + L" as a bitmap file");
    const DIBSECTION& section = greyed.section();
    std::wstring why;
    if (!WriteBinaryFile(arguments[1], BitmapFile(section), why)) return Answer::Failure(why);
    return Record{{L"width", static_cast<int>(section.dsBm.bmWidth)},
                  {L"height", static_cast<int>(section.dsBm.bmHeight)}};
}

constexpr SwitchRow kPickSwitches[] = {{L"title", true}, {L"start", true}};

constexpr Command kCommands[] = {
    {L"pick-folder", L"[--title T] [--start DIR]",
     L"Lets the user pick a folder in a window titled T that opens at DIR.", kPickSwitches, 0, 0, PickFolder},
    {L"grey-image",
     L"IN.bmp OUT.bmp",
     L"The bitmap as it looks when disabled, in 24 bits.",
     {},
     2,
     2,
     GreyImage},
};

}  // namespace

std::span<const Command> ShellCommands() {
    return kCommands;
}
