#pragma once

#include <cstdint>
#include <span>

namespace vgps {

struct Desktop;

// A rectangle on the desktop that all screens share, in pixels; left and top may be negative.
struct WindowPlace {
  int32_t left = 0;
  int32_t top = 0;
  int32_t width = 0;  // 0: unknown
  int32_t height = 0;
  bool maximized = false;

  bool operator==(const WindowPlace&) const = default;
};

// Moves the rectangle, and shrinks it if necessary, so that the window is visible and its caption
// can be dragged: the screen that it was on may be gone. `screens` excludes task bars; if there are
// none, the rectangle is returned unchanged.
WindowPlace reachablePlace(const WindowPlace& place, std::span<const WindowPlace> screens);

// The window's position when the program last ended. Width 0 if it never has.
WindowPlace storedPlace(const Desktop& app);

// Restores the screen and the colors of the last run; at night, the night colors are always used.
// Call this after `startClocks` and `startSettings`.
void restoreView(Desktop& app);

// Stores the position, screen, and colors in the settings document when the program ends. A damaged
// document is left unchanged.
void rememberView(Desktop& app);

}  // namespace vgps
