#pragma once

#include <cstdint>

namespace vgps {

struct Desktop;

// The keyboard and the wheel on the raw log screen. Each returns false where they mean nothing:
// another screen shows, or the key has no use there.

// `key` as in the rows of keys: a virtual key code.
bool onRawLogKey(Desktop& app, uint16_t key);
// A typed character goes into the filter; backspace takes one back, escape all.
bool onRawLogTyped(Desktop& app, char32_t character);
// Notches of the wheel, away from the user is positive.
bool onRawLogWheel(Desktop& app, int notches);

}  // namespace vgps
