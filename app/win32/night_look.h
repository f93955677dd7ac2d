#pragma once

#include <windows.h>

namespace vgps {

// The night colors of the program on what the system draws. Menus and the system's own message
// boxes keep the system's look: it has no documented way to darken them.

// The caption and border of a window; nothing before Windows 11, which brought it.
void darkenFrame(HWND window, bool dark);

// A dialog with all its controls, for as long as it is open. Call it when the controls are there.
void darkenDialog(HWND dialog);

}  // namespace vgps
