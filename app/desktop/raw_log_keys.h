#pragma once

#include <cstdint>

namespace vgps {

struct Desktop;

// Keyboard and mouse wheel on the raw log screen. All return false if the input has no effect:
// another screen is shown, or the key is not used.

// `key` is a virtual key code.
bool onRawLogKey(Desktop& app, uint16_t key);
// Adds a typed character to the filter; Backspace deletes the last one, Escape all of them.
bool onRawLogTyped(Desktop& app, char32_t character);
// In notches of the wheel; positive away from the user.
bool onRawLogWheel(Desktop& app, int notches);

}  // namespace vgps
