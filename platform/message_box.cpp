#include "platform/message_box.h"

#include <atomic>
#include <cstdint>

#include "platform/win32.h"

namespace ql {

namespace {

void ShowSystemBox(const wchar_t* title, const wchar_t* text) {
    ::MessageBoxW(nullptr, text, title, MB_OK | MB_ICONERROR | MB_TASKMODAL);
}

std::atomic<ErrorBox> g_errorBox = &ShowSystemBox;

}  // namespace

void ShowErrorBox(const wchar_t* title, const wchar_t* text) {
    g_errorBox.load()(title, text);
}

ErrorBox SetErrorBox(ErrorBox box) noexcept {
    return g_errorBox.exchange(box ? box : &ShowSystemBox);
}

void CheckObject(const void* object, unsigned long expected) {
    if (static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(object)) == expected) return;
    ShowErrorBox(
        L"Bad Mojo",
        L"this pointer is corrupt\nThis is a serious medical condition.\nPlease report this to Orrin.");
}

}  // namespace ql
