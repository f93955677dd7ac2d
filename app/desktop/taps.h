#pragma once

#include "app/desktop/desktop.h"

namespace vgps {

inline constexpr uint32_t kTapDelayMs = 100;

// A press at this point follows after a tenth of a second, unless another one comes before.
void delayTap(Desktop& app, uint32_t point);

// When `kTapTimer` has come.
void onTapTimer(Desktop& app);

}  // namespace vgps
