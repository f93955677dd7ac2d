#pragma once

#include "display/scene.h"

namespace vgps {

// The read-out of the fix on the whole canvas: position, speed, course, altitude, times, satellites
// with their signals, and a status line. Made for 320x240 upwards.
void drawReadout(Canvas& canvas, const Scene& scene);

}  // namespace vgps
