#pragma once

#include "app/app_state.h"
#include "app/dialogs.h"

namespace vgps {

// What the settings dialogs of the program work on. `app` outlives it. The port search takes the
// connection for itself: until it has ended nobody else may open or close one.
DialogContext dialogContextOf(AppState& app);

}  // namespace vgps
