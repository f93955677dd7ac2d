#pragma once

#include <windows.h>

namespace vgps {

// Night colors for what the system draws. Menus and the system's message boxes keep the system's
// look: there is no documented way to darken them.

// Darkens the caption and border of a window; no effect before Windows 11.
void darkenFrame(HWND window, bool dark);

// Darkens a dialog and its controls for as long as it is open. Call this after the controls have
// been created.
void darkenDialog(HWND dialog);

}  // namespace vgps
