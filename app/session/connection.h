#pragma once

#include <string>

#include "app/session/app_state.h"

namespace vgps {

// Where the data come from, as the settings and the command line choose it.
struct SourceChoice {
  std::string port = {};  // "COM3", "/dev/ttyUSB0"
  uint32_t speed = kDefaultBaudRate;
  bool simulate = false;
  bool useGpsApi = false;
  bool useSensorApi = false;
};

// "COM3, 9600 baud"
std::string serialSourceName(const std::string& port, uint32_t speed);

// Why a port does not open, in words for a person.
std::string portProblem(PortError error, const std::string& port);

// What the settings say at this moment, also when another program has just changed them.
SourceChoice sourceOfSettings(AppState& app);

// Lines for the simulation out of a track or GPX file, or the last track of the library when `path`
// is empty. False when there is nothing to be had, or nobody who could read it.
bool loadSimulationFrom(AppState& app, const std::string& path);

// Opens the source, closing the one before. A failure is told to the person; `app.fix.portError`
// says why.
bool connectReceiver(AppState& app, const SourceChoice& choice);

// False when nothing was open.
bool disconnectReceiver(AppState& app);

// UTC minus local time in whole hours, as minutes. Minutes of the clocks are not compared, so a
// zone with a half hour is taken to the whole one.
int32_t measureUtcOffset(const DateTime& utc, const DateTime& local);

// Ends the readers. False when one is still alive after two seconds: then `app` must outlive it.
bool stopReceiver(AppState& app);

}  // namespace vgps
