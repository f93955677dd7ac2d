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

// When each value of the read-out came last, by what the line vouched for. Values of a fix are news
// only while there is one; the clock and the satellites need none.
void noteReceived(UiFix& shown, std::string_view line, uint32_t said, uint32_t tick);

}  // namespace vgps
