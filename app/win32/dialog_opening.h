#pragma once

#include <windows.h>

#include "base/texts.h"

#include <cstdint>

// Functions that every dialog calls when it opens.
namespace vgps {

// Translates the caption and texts of a dialog that was just opened. `texts` is the first number of
// its texts; 0 if it has none except its buttons.
void translateDialog(HWND dialog, Text texts);

// Centers the dialog over its owner, as far as the screen allows.
void centerOverOwner(HWND dialog);

}  // namespace vgps
