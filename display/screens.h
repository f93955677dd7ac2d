#pragma once

#include <cstdint>

#include "display/scene.h"
#include "platform/canvas.h"

namespace vgps {

// Draws the scene's screen, or the read-out if that screen is not available.
void drawScreen(Canvas& canvas, const Scene& scene);

bool isScreenDrawn(Screen screen);

}  // namespace vgps
