#pragma once

#include <windows.h>

namespace vgps {

struct AppState;

// The menu bar out of the program's menu rows. Null when the system refuses; it belongs to the
// window that it is set for.
HMENU createMainMenu();

// Check marks and greying of a menu that is about to open.
void updateMenu(HMENU menu, const AppState& app);

// The keys of the menu items; the caller destroys the table.
HACCEL createAccelerators();

// The program's keys while others are in front. A key that another program has is no error: it
// stays with that program.
void registerHotKeys(HWND window);
void unregisterHotKeys(HWND window);

}  // namespace vgps
