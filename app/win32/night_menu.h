#pragma once

#include <windows.h>

// Menus in the night colors. The system has no colors for them, so the window draws the items
// itself while it is night.
namespace vgps {

// For the menu bar and everything that opens from it.
void darkenMenu(HMENU menu, bool dark);

// For WM_MEASUREITEM and WM_DRAWITEM of a window whose menu is dark. Return false if the item is
// not one of a menu.
bool measureNightMenuItem(HWND window, MEASUREITEMSTRUCT& item);
bool drawNightMenuItem(HWND window, const DRAWITEMSTRUCT& item);

// For WM_MENUCHAR: the system does not look for the mnemonics of items that it does not draw.
LRESULT itemOfMenuCharacter(HMENU menu, wchar_t typed);

}  // namespace vgps
