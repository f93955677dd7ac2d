#pragma once

#include <string_view>

#include "app/session/app_state.h"
#include "platform/ui_thread.h"

namespace vgps {

// Handles every message from the reader, on the user-interface thread while its sender waits.
void onUiMessage(AppState& app, const UiMessage& message);

// Draws what was handled but not drawn yet, once a repaint is due again: otherwise the last
// sentences of a burst would be shown only with the next burst. Returns false if there was nothing
// to draw.
bool refreshDisplays(AppState& app);

// Notes which values the line reported, and when. Values of a fix count only while there is a fix;
// the clock and the satellites do not depend on one.
void noteReceived(UiFix& shown, std::string_view line, uint32_t said, uint32_t tick);

}  // namespace vgps
