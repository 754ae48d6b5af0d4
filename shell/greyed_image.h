#pragma once

#include "platform/export.h"

// NOLINTBEGIN(bugprone-reserved-identifier): the system's names
struct HBITMAP__;
struct HICON__;
// NOLINTEND(bugprone-reserved-identifier)
using HBITMAP = HBITMAP__*;
using HICON = HICON__*;

// Images for controls that are disabled: every pixel becomes the grey of its luminance, (29 blue + 150 green
// + 77 red) / 256, moved half way to white, so that black glyphs look disabled too: black is 128, white 255.
// The original stays as it is. Null when it is no such image or the system has no memory left. A bitmap may
// stay selected into a device context meanwhile. Safe on any thread.

// A bottom-up DIB section of 24 bits and the same size; the caller deletes it with DeleteObject. The original
// may be of any depth; an alpha channel is dropped.
QL_API HBITMAP CreateGreyedBitmap(HBITMAP bitmap);

// An icon, or a cursor, of 24 bits with the same size, mask and hot spot; the caller destroys it with
// DestroyIcon. The mask alone says what is transparent: an alpha channel is dropped, and masked pixels that
// would invert the screen are transparent.
QL_API HICON CreateGreyedIcon(HICON icon);
