#pragma once

#include <windows.h>

namespace vgps {

// The resolution of the screen that the window is on, in dpi. Before Windows 10, or without a
// window, that of the whole system.
int dpiOf(HWND window);

// The same in pixels per 1/96 inch.
float densityOf(HWND window);

// The outer size of a window with this style whose client area has the given size at 96 dpi.
// Assumes a menu bar of one line.
SIZE windowSizeFor(SIZE client, DWORD style, bool menu, int dpi);

// Loads an icon from the program's resources in the standard size at this resolution; `small` is
// for the caption and the notification area. Returns null if there is none. The caller destroys it.
HICON loadIcon(HINSTANCE instance, const wchar_t* name, bool small, int dpi);

}  // namespace vgps
