#pragma once

#include "display/scene.h"

namespace vgps {

// The readout screen: position, speed, course, altitude, times, satellites with their signals, and
// a status line. Fills the whole canvas, which should be at least 320x240 pixels.
void drawReadout(Canvas& canvas, const Scene& scene);

}  // namespace vgps
