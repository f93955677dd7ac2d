#pragma once

#include <string>
#include <vector>

#include "app/session/app_state.h"

// Messages about saving tracks, and questions about recordings that a crash interrupted.
namespace vgps {

// Whether tracks can be saved there. Tells the user why not, or that the library is damaged.
bool reportLibrary(AppState& app, const LibraryOpening& opening);

// Tells the user the result of saving a track unless everything went well.
void reportSaveResult(AppState& app, const SaveResult& keeping);

// At startup: asks about every unfinished recording and carries out the answer. If one is
// continued, it becomes the current track.
void offerRecovery(AppState& app);

// The last track of the library as simulation lines. Returns false if there is none.
bool simulationFromLibrary(AppState& app, std::vector<std::string>& lines);

}  // namespace vgps
