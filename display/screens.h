#pragma once

#include <cstdint>

#include "display/scene.h"
#include "platform/canvas.h"

namespace vgps {

// Draws the screen that the scene selects, or the readout if that screen is not available.
void drawScreen(Canvas& canvas, const Scene& scene);

bool isScreenDrawn(Screen screen);

}  // namespace vgps
