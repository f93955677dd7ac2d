#pragma once

#include "display/scene.h"
#include "platform/canvas.h"

namespace vgps {

// The raw log screen: the received lines, the newest at the bottom, and the delay from the last
// byte to the screen.
void drawRawLog(Canvas& canvas, const Scene& scene);

}  // namespace vgps
