#pragma once

#include "display/scene.h"
#include "platform/canvas.h"

namespace vgps {

// What came down the line, the newest at the foot, and how long it took from its last byte to the
// screen.
void drawRawLog(Canvas& canvas, const Scene& scene);

}  // namespace vgps
