#pragma once

#include <windows.h>

#include "base/texts.h"

#include <cstdint>

// What every dialog does when it opens.
namespace vgps {

// Shows the caption and the words of a dialog that was just opened in the language of the user.
// `texts`: the first number of its texts; 0 when it has none but its buttons.
void translateDialog(HWND dialog, Text texts);

// In the middle of its owner, as far as the screen allows.
void centreOverOwner(HWND dialog);

}  // namespace vgps
