#pragma once

#include <string>
#include <vector>

#include "app/session/app_state.h"

// What the desktop says about keeping tracks, and what it asks about those that a crash unfinished.
namespace vgps {

// Whether tracks can be kept there; says why not, or that the library is damaged.
bool tellLibrary(AppState& app, const LibraryOpening& opening);

// Says what became of a track unless all went well.
void tellKeeping(AppState& app, const Keeping& keeping);

// A start of the program: asks about every recording that ended with its program, and carries out
// the answer. One that is continued becomes the current track.
void offerRecovery(AppState& app);

// The last track of the library as lines of the simulation. False when there is none.
bool simulationFromLibrary(AppState& app, std::vector<std::string>& lines);

}  // namespace vgps
