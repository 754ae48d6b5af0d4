#include "prefs/window_placement.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <tuple>

#include "platform/win32.h"
#include "prefs/fit_rect.h"
#include "settings/preferences.h"
#include "tests/support/private_registry.h"

bool operator==(const RECT& a, const RECT& b) {
    return ::EqualRect(&a, &b);
}
bool operator==(const WINDOWPLACEMENT& a, const WINDOWPLACEMENT& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

namespace {

constexpr const wchar_t* kSection = L"Window";
constexpr const wchar_t* kEntry = L"Placement of a test";

// What is read of a text, and whether it was.
std::pair<bool, WINDOWPLACEMENT> Parsed(const std::wstring& text, WINDOWPLACEMENT before = {}) {
    const bool done = PlacementFromString(before, text);
    return {done, before};
}

TEST(PlacementText, IsTheElevenNumbersBothWays) {
    const std::pair<WINDOWPLACEMENT, const wchar_t*> kCases[] = {
        {{44, 2, 3, {0, -32000}, {-8, 7}, {INT_MIN, -5, INT_MAX, 0}},
         L"44, 2, 3, 0, -32000, -8, 7, -2147483648, -5, 2147483647, 0"},
        {{44, 0xffffffff, 2, {}, {}, {}}, L"44, -1, 2, 0, 0, 0, 0, 0, 0, 0, 0"}};
    for (const auto& [placement, expected] : kCases) {
        RWWString text;
        PlacementToString(placement, text);
        EXPECT_EQ(expected, text);
        EXPECT_TRUE(Parsed(expected) == std::pair(true, placement)) << expected;
    }
}

// With any separators, and whole or not at all.
TEST(PlacementText, IsElevenNumbersAtLeast) {
    const WINDOWPLACEMENT before = {1, 2, 3, {4, 5}, {6, 7}, {8, 9, 10, 11}},
                          usual = {44, 0, 1, {-1, -1}, {-1, 12}, {10, 10, 400, 300}},
                          held = {44, 0, 1, {INT_MAX, INT_MIN}, {-5, 0}, {0, 0, 0, 0}};
    const std::wstring longest(63, L'9'), tooLong(64, L'0');
    const std::pair<std::wstring, WINDOWPLACEMENT> cases[] = {
        {L"x44   0\t1,,-1 -1/-1:12 10 10 400 300, 12, text", usual},
        {L"-, 0, 1, -1, -1, -1, 12-3, 10-, 10--, 400, 300-", usual},
        {longest + L" 0 1 -1 -1 -1 12 10 10 400 300 " + longest + L'9', usual},
        {L"44 0 1 99999999999 -99999999999 -5-7 --5 - 0 0 0", held},
        {L"", before},
        {L"44, 0, 1, -1, -1, -1, -1, 10, 10, 400, ", before},
        {L"44, " + tooLong + L", 1, -1, -1, -1, -1, 10, 10, 400, 300, 5, 6", before}};
    for (const auto& [text, read] : cases)
        EXPECT_TRUE(Parsed(text, before) == std::pair(!(read == before), read)) << text;
}

TEST(FitRect, MovesIntoTheAreaAndKeepsTheSize) {
    constexpr RECT kMain = {0, 0, 1000, 800};
    const std::tuple<const char*, RECT, RECT, RECT> kCases[] = {
        {"inside", kMain, {10, 20, 400, 300}, {10, 20, 400, 300}},
        {"one pixel from the right and bottom", kMain, {899, 699, 999, 799}, {899, 699, 999, 799}},
        {"touches the right and bottom", kMain, {900, 700, 1000, 800}, {899, 699, 999, 799}},
        {"before left and top", kMain, {-50, -1, 50, 99}, {0, 0, 100, 100}},
        {"as large, elsewhere", kMain, {3, 4, 1003, 804}, {0, 0, 1000, 800}},
        {"larger", kMain, {5, -9, 2005, 991}, {0, 0, 2000, 1000}},
        {"touches an edge at 0", {-1280, -200, 0, 824}, {-100, 0, 0, 100}, {-101, 0, -1, 100}},
        {"wider than numbers go", kMain, {INT_MIN, 0, INT_MAX, 100}, {0, 0, INT_MAX, 100}},
        {"far away", kMain, {INT_MAX - 50, 0, INT_MAX, 50}, {949, 0, 999, 50}}};
    for (const auto& [what, area, before, fitted] : kCases) {
        RECT rect = before;
        EXPECT_EQ(!(before == fitted), ql::FitRect(area, rect)) << what;
        EXPECT_TRUE(rect == fitted) << what << ": " << rect.left << ' ' << rect.top << ' ' << rect.right
                                    << ' ' << rect.bottom;
    }
}

// A window of the tests' own ends with the process: without a window manager the system would wait two
// seconds for each that is destroyed.
HWND NewWindow(DWORD style) {
    return ::CreateWindowExW(0, L"Static", L"placement", style, 0, 0, 0, 0, nullptr, nullptr, nullptr,
                             nullptr);
}
HWND AtFirstPlace(HWND window) {
    const WINDOWPLACEMENT first = {44, 0, SW_SHOWNORMAL, {-1, -1}, {-1, -1}, {100, 120, 400, 320}};
    EXPECT_TRUE(::SetWindowPlacement(window, &first));
    return window;
}
HWND Sizable(int which = 0) {
    static const HWND windows[] = {NewWindow(WS_OVERLAPPEDWINDOW), NewWindow(WS_OVERLAPPEDWINDOW)};
    return AtFirstPlace(windows[which]);
}
RECT RectOf(HWND window) {
    RECT rect = {};
    ::GetWindowRect(window, &rect);
    return rect;
}

using WindowPlacement = SettingsTest;

void Put(const wchar_t* text) {
    WriteQLRegString(kSection, kEntry, text);
}
RWWString Stored() {
    return GetQLRegString(kSection, kEntry, nullptr);
}
bool Restore(HWND window) {
    return RestoreQLRegPlacement(window, kSection, kEntry);
}

TEST_F(WindowPlacement, ComesBackAndShowsTheWindowAsItWasBeforeItWasMinimised) {
    for (const auto& [before, last] : {std::pair(SW_SHOWNORMAL, SW_SHOWNORMAL),
                                       {SW_MAXIMIZE, SW_MAXIMIZE},
                                       {SW_SHOWNORMAL, SW_MINIMIZE},
                                       {SW_MAXIMIZE, SW_MINIMIZE}}) {
        const HWND window = Sizable(), another = Sizable(1);
        ::ShowWindow(window, before);
        ::ShowWindow(window, last);
        SaveQLRegPlacement(window, kSection, kEntry);
        EXPECT_TRUE(Stored().view().ends_with(L", 100, 120, 400, 320")) << Stored().str();
        ::MoveWindow(another, 300, 310, 500, 400, TRUE);
        ::ShowWindow(another, SW_HIDE);
        EXPECT_TRUE(Restore(another)) << Stored().str();
        EXPECT_TRUE(::IsWindowVisible(another));
        EXPECT_FALSE(::IsIconic(another));
        EXPECT_EQ(before == SW_MAXIMIZE, ::IsZoomed(another) != FALSE);
        ::ShowWindow(another, SW_RESTORE);
        EXPECT_TRUE((RECT{100, 120, 400, 320} == RectOf(another)));
    }
}

TEST_F(WindowPlacement, OfAFixedWindowMovesItsCornerOnly) {
    const HWND window = AtFirstPlace(NewWindow(WS_OVERLAPPEDWINDOW & ~(WS_THICKFRAME | WS_MAXIMIZEBOX)));
    for (const wchar_t* text :
         {L"44, 0, 1, -1, -1, -1, -1, 10, 20, 400, 300", L"44, 0, 3, -1, -1, -1, -1, 10, 20, 110, 120"}) {
        Put(text);
        EXPECT_TRUE(Restore(window));
        EXPECT_TRUE((RECT{10, 20, 310, 220} == RectOf(window)));
        EXPECT_FALSE(::IsZoomed(window));
    }
}

TEST_F(WindowPlacement, OffTheScreenIsMovedIntoTheWorkArea) {
    RECT area = {};
    ASSERT_TRUE(::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0));
    const HWND window = Sizable();
    Put(L"44, 0, 1, -1, -1, -1, -1, 90000, -90000, 90390, -89710");
    EXPECT_TRUE(Restore(window));
    EXPECT_TRUE((RECT{area.right - 391, area.top, area.right - 1, area.top + 290} == RectOf(window)));
}

TEST_F(WindowPlacement, ThatMakesNoSenseOrOfNoWindowIsRefused) {
    const HWND window = Sizable();
    const RECT before = RectOf(window);
    EXPECT_FALSE(Restore(window)) << "nothing stored";
    const std::pair<const char*, const wchar_t*> kRows[] = {
        {"empty", L""},
        {"hidden", L"44, 0, 0, -1, -1, -1, -1, 10, 10, 400, 300"},
        {"minimise", L"44, 0, 6, -1, -1, -1, -1, 10, 10, 400, 300"},
        {"minimised, not active", L"44, 0, 7, -1, -1, -1, -1, 10, 10, 400, 300"},
        {"minimised by force", L"44, 0, 11, -1, -1, -1, -1, 10, 10, 400, 300"},
        {"narrow", L"44, 0, 1, -1, -1, -1, -1, 10, 10, 59, 300"},
        {"low", L"44, 0, 1, -1, -1, -1, -1, 10, 10, 400, 59"},
        {"turned over", L"44, 0, 1, -1, -1, -1, -1, 400, 300, 10, 10"},
        {"beyond numbers", L"44, 0, 1, -1, -1, -1, -1, 2147483647, 0, -2147483648, 100"}};
    for (const auto& [what, text] : kRows) {
        Put(text);
        EXPECT_FALSE(Restore(window)) << what;
        EXPECT_TRUE(before == RectOf(window)) << what;
    }
    Put(L"44, 0, 1, -1, -1, -1, -1, 10, 10, 60, 60");
    EXPECT_TRUE(Restore(window)) << "just large enough";
    EXPECT_FALSE(Restore(nullptr));
    SaveQLRegPlacement(nullptr, kSection, kEntry);
    EXPECT_EQ(L"44, 0, 1, -1, -1, -1, -1, 10, 10, 60, 60", Stored());
}

}  // namespace
