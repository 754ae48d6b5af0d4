#pragma once

#include "platform/export.h"
#include "rw/wide_string.h"

struct HWND__;  // NOLINT(bugprone-reserved-identifier): the system's name
using HWND = HWND__*;
struct tagWINDOWPLACEMENT;

// Windows that come back where they were: a window's placement as a line of text in a preference. The text is
// the eleven numbers of the system's WINDOWPLACEMENT, separated by a comma and a blank: length, flags, show
// command, minimised x and y, maximised x and y, normal left, top, right and bottom.
//     44, 0, 1, -1, -1, -1, -1, 10, 10, 400, 300
// Safe on any thread; the window's own is the one to move it on.

// Replaces the text. The length is written as the record has it. Empty when memory runs out.
QL_API void PlacementToString(const tagWINDOWPLACEMENT& placement, RWWString& text);

// The placement that a text stands for, its length 44; false, and the placement untouched, when the text has
// less than eleven numbers. Kept on purpose: any characters but digits and "-" separate; the first number
// only has to be there; what follows the eleventh is not looked at. A run of digits and "-" is one number,
// which ends before a "-" within it, so that 12-3 is 12, and is 0 without digits in front; a run of more than
// 63 makes the text unreadable. A number beyond 32 bits is the nearest one.
QL_API bool PlacementFromString(tagWINDOWPLACEMENT& placement, const RWWString& text);

// Writes the window's placement to a preference (settings/preferences.h); nothing when it is no window.
QL_API void SaveQLRegPlacement(HWND window, const wchar_t* section, const wchar_t* entry);

// Places the window as the preference says, moved into the work area of the nearest monitor; a minimised one
// comes back maximised or normal. False, and the window keeps its place, when there is no such text or it is
// unreadable, would hide or minimise the window, or is less than 50 pixels wide or high; also when it is no
// window.
//
// Kept on purpose: a window without a sizing frame is moved to the left top corner only, neither sized nor
// shown; and a rectangle that touches the work area's right or bottom edge is moved one pixel in.
QL_API bool RestoreQLRegPlacement(HWND window, const wchar_t* section, const wchar_t* entry);
