#pragma once

#include "app/desktop/dialogs.h"
#include "app/session/app_state.h"

namespace vgps {

// The context of the program's settings dialogs. `app` must outlive it. The port search closes the
// connection: until the search has ended, no other code may open or close one.
DialogContext dialogContextOf(AppState& app);

}  // namespace vgps
