#pragma once

#include "display/scene.h"

namespace vgps {

// The read-out of the fix on the whole canvas: position, speed, course, height, times, satellites
// with their signals, and a line about the receiver. Made for 320x240 upwards.
void drawReadout(Canvas& canvas, const Scene& scene);

}  // namespace vgps
