#pragma once

#include <windows.h>

namespace vgps {

struct AppState;
struct FinderSetup;

// The search for a receiver from the program's menu: gives the port in use free, connects to the
// receiver that the user chose and keeps it in the settings, or takes the port in use again.
void findReceiver(AppState& app, HINSTANCE resources, HWND owner, const FinderSetup& setup);

}  // namespace vgps
