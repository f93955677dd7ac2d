#pragma once

#include "app/session/app_state.h"
#include "platform/ui_thread.h"

namespace vgps {

// Handles every message from the reader, on the user-interface thread while its sender waits.
void onUiMessage(AppState& app, const UiMessage& message);

// Draws what was handled but not drawn yet, once a repaint is due again: otherwise the last
// sentences of a burst would be shown only with the next burst. Returns false if there was nothing
// to draw.
bool refreshDisplays(AppState& app);

}  // namespace vgps
