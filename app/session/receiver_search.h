#pragma once

#include <optional>

#include "app/session/connection.h"

namespace vgps {

// What the user chose from the search results.
struct FoundReceiver {
  SourceChoice source;
  bool atEveryStart = false;  // whether the program connects automatically at startup from now on
};

// Begins a search for a receiver, which needs exclusive access to the ports: the port in use is
// released until the search ends. The connection still counts as open meanwhile.
void beginReceiverSearch(AppState& app);

// Connects to the receiver that the user chose and stores it in the settings, replacing any other
// source; reports an error if they cannot be written. If nothing was chosen, the previous port is
// reopened.
void endReceiverSearch(AppState& app, const std::optional<FoundReceiver>& chosen);

}  // namespace vgps
