#pragma once

#include <windows.h>

namespace vgps {

struct AppState;

// Creates the menu bar from the program's menu rows. Returns null if the system refuses. The window
// that it is set for owns it.
HMENU createMainMenu();

// Updates the check marks and disabled items of a menu that is about to open.
void updateMenu(HMENU menu, const AppState& app);

// The keys of the menu items; the caller destroys the table.
HACCEL createAccelerators();

// Registers the keys that work while other programs are active. A key that another program has
// already registered is skipped without an error.
void registerHotKeys(HWND window);
void unregisterHotKeys(HWND window);

}  // namespace vgps
