#pragma once

#include <string>
#include <vector>

#include "app/session/app_state.h"

namespace vgps {

// "COM3, 9600 baud", "Simulation"; empty if none was chosen.
std::string sourceName(const SourceChoice& source);

// The name of the source that the link has opened. If this computer has no location sensor and a
// serial port was opened instead, the name of the port.
std::string sourceInUse(const AppState& app);

// The source in the settings as they are now, even if another program has just changed them.
SourceChoice sourceOfSettings(AppState& app);

// Replays these lines instead of the built-in ones. Returns false, and keeps those in use, if there
// are none.
bool setSimulation(AppState& app, std::vector<std::string> lines);
// Loads simulation lines from a track file, or from the last track of the library if `path`
// is empty. Returns false if there are none or the file cannot be read.
bool loadSimulationFrom(AppState& app, const std::string& path);

// What the simulation plays from its next start on.
void replayLines(AppState& app, std::vector<std::string> lines);

// Resets what `shown` knows about the source: no data has arrived yet.
void resetSourceState(UiFix& shown);

// Resets the displayed maxima.
void resetMaxima(AppState& app);
// Resets the maxima and the moving and standing times.
void resetTrip(AppState& app);

// Puts the walk or the trip into the simulation, unless the user has loaded something else.
void chooseSimulationData(AppState& app, bool walk);

// Opens the source, closing the previous one, and reports a failure to the user.
bool connectReceiver(AppState& app, const SourceChoice& choice);

// Called by the 5-second timer: checks the link and reports changes to the user.
void checkConnection(AppState& app);

// UTC minus local time, rounded to whole hours, in minutes. The minutes of the clocks are ignored,
// so a half-hour time zone becomes a whole one.
int32_t measureUtcOffset(const DateTime& utc, const DateTime& local);

// Stops the readers. Returns false if one is still running after two seconds: then `app` must not
// be destroyed.
bool stopReceiver(AppState& app);

}  // namespace vgps
