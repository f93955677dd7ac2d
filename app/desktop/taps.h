#pragma once

#include "app/desktop/desktop.h"

namespace vgps {

inline constexpr uint32_t kTapDelayMs = 100;

// Delays a tap by a tenth of a second; a tap that follows within that time replaces it.
void delayTap(Desktop& app, uint32_t point);

// Called when `kTapTimer` fires.
void onTapTimer(Desktop& app);

}  // namespace vgps
