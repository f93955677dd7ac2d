#pragma once

#include <windows.h>

namespace vgps {

// Says that an operation of the window was given up. `window` may be null.
void tellOutOfMemory(HWND window);

}  // namespace vgps
