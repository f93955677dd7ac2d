#pragma once

#include <span>

#include "display/scene.h"

namespace vgps {

// Draws one bar per satellite in view, with its C/N0 as height: solid if the satellite is used,
// pale otherwise. Of several signals of a satellite, the strongest counts. If there is not enough
// space for all, the weakest satellites are omitted.
void drawSignalBars(Canvas& canvas, const Rect& box, std::span<const ViewedSatellite> view,
                    const Palette& palette, float textSize, float smallestText);

}  // namespace vgps
