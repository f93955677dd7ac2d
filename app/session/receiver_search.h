#pragma once

#include <optional>

#include "app/session/connection.h"

namespace vgps {

// A search for a receiver needs the ports for itself: the one in use is given free until the search
// ends. What is connected stays so.
void beginReceiverSearch(AppState& app);

// Connects to the receiver that the person chose and keeps it in the settings, in place of any
// other source; settings that cannot be written are told. Without a choice the port in use is taken
// again.
void endReceiverSearch(AppState& app, const std::optional<SourceChoice>& chosen);

}  // namespace vgps
