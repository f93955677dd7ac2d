#pragma once

#include "app/desktop/dialogs.h"
#include "app/session/app_state.h"

namespace vgps {

// What the settings dialogs of the program work on. `app` outlives it. The port search takes the
// connection for itself: until it has ended, no other code may open or close one.
DialogContext dialogContextOf(AppState& app);

}  // namespace vgps
