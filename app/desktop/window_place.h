#pragma once

#include <cstdint>
#include <span>

namespace vgps {

struct Desktop;

// A rectangle of the desktop that all screens share, in pixels; left and top may be negative.
struct WindowPlace {
  int32_t left = 0;
  int32_t top = 0;
  int32_t width = 0;  // 0: not known
  int32_t height = 0;
  bool maximized = false;

  bool operator==(const WindowPlace&) const = default;
};

// The place moved, and made smaller where it must be, so that the window can be seen and its
// caption be grasped: the screen that it was on may have gone. `screens` without task bars; without
// any the place is returned as it is.
WindowPlace reachablePlace(const WindowPlace& place, std::span<const WindowPlace> screens);

// Where the window was when the program ended; of width 0 before that.
WindowPlace storedPlace(const Desktop& app);

// Shows the screen and the colors of the last run. The hours of the night have night colors in any
// case. After `startClocks` and `startSettings`.
void restoreView(Desktop& app);

// Puts place, screen and colors into the settings document, for the end of the program. A damaged
// document stays as it is.
void rememberView(Desktop& app);

}  // namespace vgps
