#pragma once

#include <string>
#include <vector>

#include "app/session/app_state.h"

namespace vgps {

// Where the settings have the track library, whether it is there or not.
std::string libraryPath(const AppState& app);

// The track library, opened where the settings say when it is first needed. False when nothing can
// be kept there; the person has been told.
bool openLibrary(AppState& app);

// Why the track library cannot lie at `path`, as a sentence for a person: the settings or a
// recording's journal have that place, also before they are there. Empty when it can.
std::string libraryRefusal(const std::string& path, const AppPaths& paths);

// True when the track is on the disk; the person has been told otherwise.
bool addToLibrary(AppState& app, Track& track);

// The last track of the library as lines of the simulation. False when there is none.
bool simulationFromLibrary(AppState& app, std::vector<std::string>& lines);

// A start of the program: asks about every recording that ended with its program, and carries out
// the answer. One that is gone on with becomes the current track.
void offerRecovery(AppState& app);

}  // namespace vgps
