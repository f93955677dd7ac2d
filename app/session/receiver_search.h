#pragma once

#include <optional>

#include "app/session/connection.h"

namespace vgps {

// What the user took from the list of a search.
struct FoundReceiver {
  SourceChoice source;
  bool atEveryStart = false;  // the program connects by itself from now on, or no longer
};

// A search for a receiver needs exclusive access to the ports: the port in use is released until
// the search ends. The connection counts as open meanwhile.
void beginReceiverSearch(AppState& app);

// Connects to the receiver that the user chose and stores it in the settings in place of any other
// source; a failure to write them is reported. Without a choice, the previous port is opened again.
void endReceiverSearch(AppState& app, const std::optional<FoundReceiver>& chosen);

}  // namespace vgps
