#include "prefs/window_placement.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cwchar>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/failure.h"
#include "platform/win32.h"
#include "prefs/fit_rect.h"
#include "settings/preferences.h"

namespace {

constexpr UINT kPlacementLength = 44;
static_assert(sizeof(WINDOWPLACEMENT) == kPlacementLength);

constexpr std::size_t kNumbers = 11;
constexpr std::size_t kTokenCapacity = 64;  // its closing zero included
constexpr LONG kLeastSize = 50;
constexpr std::wstring_view kNumberUnits = L"-0123456789";

// The number at the front of the text, which is cut off with what separates it; false when there is none.
bool TakeNumber(std::wstring_view& text, long& number) {
    text.remove_prefix(std::min(text.find_first_of(kNumberUnits), text.size()));
    const std::wstring_view token = text.substr(0, text.find_first_not_of(kNumberUnits));
    if (token.empty() || token.size() >= kTokenCapacity) return false;
    text.remove_prefix(token.size());
    wchar_t units[kTokenCapacity] = {};
    std::copy(token.begin(), token.end(), units);
    number = std::wcstol(units, nullptr, 10);
    return true;
}

bool IsTooSmall(const RECT& rect) {
    return std::int64_t{rect.right} - rect.left < kLeastSize ||
           std::int64_t{rect.bottom} - rect.top < kLeastSize;
}

bool IsRestorable(const WINDOWPLACEMENT& placement) {
    constexpr UINT kRefused[] = {SW_HIDE, SW_MINIMIZE, SW_SHOWMINNOACTIVE, SW_FORCEMINIMIZE};
    return std::ranges::find(kRefused, placement.showCmd) == std::end(kRefused) &&
           !IsTooSmall(placement.rcNormalPosition);
}

RECT PrimaryWorkArea() {
    RECT area = {0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    return area;
}

RECT WorkAreaNear(const RECT& rect) {
    MONITORINFO info = {};
    info.cbSize = sizeof info;
    const HMONITOR monitor = ::MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST);
    return monitor && ::GetMonitorInfoW(monitor, &info) ? info.rcWork : PrimaryWorkArea();
}

bool FitRectOnMonitor(RECT& rect) {
    return ql::FitRect(WorkAreaNear(rect), rect);
}

bool Apply(HWND window, const WINDOWPLACEMENT& placement) {
    if (::GetWindowLongW(window, GWL_STYLE) & WS_THICKFRAME) return ::SetWindowPlacement(window, &placement);
    const RECT& rect = placement.rcNormalPosition;
    return ::SetWindowPos(window, nullptr, rect.left, rect.top, 0, 0,
                          SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

void PlacementToString(const WINDOWPLACEMENT& placement, RWWString& text) {
    const RECT& normal = placement.rcNormalPosition;
    const std::array<LONG, kNumbers - 3> positions = {placement.ptMinPosition.x,
                                                      placement.ptMinPosition.y,
                                                      placement.ptMaxPosition.x,
                                                      placement.ptMaxPosition.y,
                                                      normal.left,
                                                      normal.top,
                                                      normal.right,
                                                      normal.bottom};
    text = ql::FailureIfThrown(RWWString(), [&] {
        std::wstring line;
        for (const UINT number : {placement.length, placement.flags, placement.showCmd})
            line += std::to_wstring(static_cast<int>(number)) + L", ";
        for (const LONG position : positions) line += std::to_wstring(position) + L", ";
        line.resize(line.size() - 2);
        return RWWString(std::move(line));
    });
}

bool PlacementFromString(WINDOWPLACEMENT& placement, const RWWString& text) {
    std::array<long, kNumbers> n;
    std::wstring_view rest = text;
    for (long& number : n) {
        if (!TakeNumber(rest, number)) return false;
    }
    placement = {kPlacementLength, static_cast<UINT>(n[1]),  static_cast<UINT>(n[2]), {n[3], n[4]},
                 {n[5], n[6]},     {n[7], n[8], n[9], n[10]}};
    return true;
}

void SaveQLRegPlacement(HWND window, const wchar_t* section, const wchar_t* entry) {
    WINDOWPLACEMENT placement = {};
    placement.length = kPlacementLength;
    if (!::GetWindowPlacement(window, &placement)) return;
    RWWString text;
    PlacementToString(placement, text);
    if (!text.isNull()) WriteQLRegString(section, entry, text.data());
}

bool RestoreQLRegPlacement(HWND window, const wchar_t* section, const wchar_t* entry) {
    WINDOWPLACEMENT placement = {};
    if (!PlacementFromString(placement, GetQLRegString(section, entry, nullptr))) return false;
    if (!IsRestorable(placement)) return false;
    if (placement.showCmd == SW_SHOWMINIMIZED) {
        placement.showCmd = placement.flags & WPF_RESTORETOMAXIMIZED ? SW_SHOWMAXIMIZED : SW_SHOWNORMAL;
    }
    FitRectOnMonitor(placement.rcNormalPosition);
    return Apply(window, placement);
}
