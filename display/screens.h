#pragma once

#include <cstdint>

#include "display/scene.h"
#include "platform/canvas.h"

namespace vgps {

// The screens, by the numbers that the view commands have less 200.
inline constexpr int32_t kReadoutScreen = 1;
inline constexpr int32_t kStatisticsScreen = 9;
inline constexpr int32_t kRawLogScreen = 99;

// Draws the scene's screen; the read-out in place of one that is not there.
void drawScreen(Canvas& canvas, const Scene& scene);

bool isScreenDrawn(int32_t screen);

}  // namespace vgps
