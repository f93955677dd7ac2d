#pragma once

#include <windows.h>

namespace vgps {

// Dots per inch of the screen that the window is on; of the whole system where each screen has no
// density of its own (before Windows 10), or without a window.
int dpiOf(HWND window);

// The same as pixels per 1/96 inch.
float densityOf(HWND window);

// The outer size of a window with this style whose client area has the given size at 96 dots per
// inch. The menu bar counts as one line.
SIZE windowSizeFor(SIZE client, DWORD style, bool menu, int dpi);

// The icon of the program's resources in the size that icons have at this density, small for the
// caption and the notification area. Null when there is none; the caller destroys it.
HICON loadIcon(HINSTANCE instance, const wchar_t* name, bool small, int dpi);

}  // namespace vgps
