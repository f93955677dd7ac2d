#pragma once

#include <windows.h>

namespace vgps {

struct AppState;
struct FinderSetup;

// The "Find my receiver" command: releases the port in use, then either connects to the receiver
// that the user chose and stores it in the settings, or reopens the previous port.
void findReceiver(AppState& app, HINSTANCE resources, HWND owner, const FinderSetup& setup);

}  // namespace vgps
