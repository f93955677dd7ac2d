#pragma once

#include <span>

#include "display/scene.h"

namespace vgps {

// One bar for each satellite of the view, as high as its C/N0: full where the satellite is used,
// pale where it is only seen. Of several signals of a satellite the strongest counts. When there
// are more satellites than room, the weakest are left out.
void drawSignalBars(Canvas& canvas, const Rect& box, std::span<const ViewedSatellite> view,
                    const Palette& palette, float textSize, float smallestText);

}  // namespace vgps
