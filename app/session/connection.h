#pragma once

#include <string>

#include "app/session/app_state.h"

namespace vgps {

// "COM3, 9600 baud", "Simulation"; empty when none was chosen.
std::string sourceName(const SourceChoice& source);

// What the settings say at this moment, also when another program has just changed them.
SourceChoice sourceOfSettings(AppState& app);

// Lines for the simulation out of a track or GPX file, or the last track of the library when `path`
// is empty. False when there is nothing to be had, or nobody who could read it.
bool loadSimulationFrom(AppState& app, const std::string& path);

// Nothing has come from the source yet.
void forgetSource(UiFix& shown);

// Opens the source, closing the one before, and tells the user of a failure.
bool connectReceiver(AppState& app, const SourceChoice& choice);

// By the 5-second timer: looks after the link and tells the user what has become of it.
void checkConnection(AppState& app);

// UTC minus local time in whole hours, as minutes. Minutes of the clocks are not compared, so a
// zone with a half hour is taken to the whole one.
int32_t measureUtcOffset(const DateTime& utc, const DateTime& local);

// Ends the readers. False when one is still alive after two seconds: then `app` must outlive it.
bool stopReceiver(AppState& app);

}  // namespace vgps
