#pragma once

#include "app/app_state.h"
#include "platform/ui_thread.h"

namespace vgps {

// Everything that comes through the door, on the user-interface thread while its sender waits.
void onUiMessage(AppState& app, const UiMessage& message);

}  // namespace vgps
