#pragma once

#include <cstdint>

#include "display/scene.h"
#include "platform/canvas.h"

namespace vgps {

// Draws the scene's screen; the read-out in place of one that is not there.
void drawScreen(Canvas& canvas, const Scene& scene);

bool isScreenDrawn(Screen screen);

}  // namespace vgps
