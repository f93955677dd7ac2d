#pragma once

#include "app/session/app_state.h"
#include "platform/ui_thread.h"

namespace vgps {

// Everything that comes through the uiThread, on the user-interface thread while its sender waits.
void onUiMessage(AppState& app, const UiMessage& message);

// Draws what was handled and has not been drawn yet, as soon as a repaint is due again: the last
// sentences of a burst would otherwise wait for the next one. False when there was nothing to do.
bool refreshDisplays(AppState& app);

}  // namespace vgps
