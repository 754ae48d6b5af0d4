#include "platform/message_box.h"

#include <atomic>

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

}  // namespace ql
