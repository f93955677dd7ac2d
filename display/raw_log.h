#pragma once

#include "display/scene.h"
#include "platform/canvas.h"

namespace vgps {

// The raw log screen: the received lines, newest at the bottom, and the delay from receiving the
// last byte to showing it.
void drawRawLog(Canvas& canvas, const Scene& scene);

// How many rows it has room for on a screen of these bounds.
size_t rawLogRoom(const Rect& bounds, float density, float fontFactor);

}  // namespace vgps
