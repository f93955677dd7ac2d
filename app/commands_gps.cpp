#include <utility>

#include "app/command_handlers.h"
#include "app/connection.h"
#include "base/texts.h"
#include "display/scene.h"

// The receiver, its log, the simulation.
namespace vgps {
namespace {

constexpr uint32_t kLogOn = 371;
constexpr uint32_t kFirstSimulationMode = 378;

constexpr uint32_t kNotAvailable = 700;
constexpr uint32_t kClockNotSet = 716;
constexpr uint32_t kClockSet = 717;
constexpr uint32_t kNoFixYet = 718;
constexpr uint32_t kNoSimulationData = 719;
constexpr uint32_t kSimulationLoaded = 720;
constexpr uint32_t kChooseSimulation = 761;
constexpr uint32_t kTracks = 762;

// Of the commands 378, 379 and 380.
constexpr SimMode kSimulationModes[] = {SimMode::tapping, SimMode::timer, SimMode::point};

// The year and the milliseconds stay those of the computer: many receivers have a wrong year after
// a week rollover, and none is right to the millisecond.
DateTime systemTimeFrom(const DateTime& gpsUtc, DateTime systemUtc) {
  systemUtc.month = gpsUtc.month;
  systemUtc.day = gpsUtc.day;
  systemUtc.hour = gpsUtc.hour;
  systemUtc.minute = gpsUtc.minute;
  systemUtc.second = gpsUtc.second;
  return systemUtc;
}

}  // namespace

void connectFromSettings(AppState& app, uint32_t) { connectReceiver(app, sourceOfSettings(app)); }

// For this run; what the settings choose stays.
void connectSimulation(AppState& app, uint32_t) { connectReceiver(app, {.simulate = true}); }

void disconnect(AppState& app, uint32_t) {
  disconnectReceiver(app);
  repaintNow(app);
}

void gpsTimeToSystem(AppState& app, uint32_t) {
  if (!hasFix(app, 0)) return showNotice(app, textOf(kNoFixYet));
  if (!app.platform.setSystemTime) return showNotice(app, textOf(kNotAvailable));
  const DateTime time = systemTimeFrom(app.shown.fix.utcTime, app.platform.clock.utc());
  const bool set = app.platform.setSystemTime(time);
  showNotice(app, textOf(set ? kClockSet : kClockNotSet));
}

void switchLog(AppState& app, uint32_t number) {
  app.settings.logStream = number == kLogOn;
  app.gps.options.logNmea = app.settings.logStream;
  if (const SettingRow* const row = findSetting("cfg\\vgps", "lgn")) {
    app.config.set(*row, app.settings.logStream ? 1.0 : 0.0);
  }
  repaintNow(app);
}

void chooseSimulationMode(AppState& app, uint32_t number) {
  app.gps.simulation.setMode(kSimulationModes[number - kFirstSimulationMode]);
  repaintNow(app);
}

void loadSimulation(AppState& app, uint32_t) {
  if (!app.extensions.simulationFrom) return showNotice(app, textOf(kNotAvailable));
  const std::string path =
      app.platform.window.chooseFile({.title = std::string(textOf(kChooseSimulation)),
                                      .kind = std::string(textOf(kTracks)),
                                      .pattern = "*.xml;*.gpx"});
  if (path.empty()) return;
  const bool loaded = loadSimulationFrom(app, path);
  showNotice(app, textWith(loaded ? kSimulationLoaded : kNoSimulationData, path));
}

void stepSimulation(AppState& app, uint32_t) { app.gps.simulation.step(); }

void clearRawLog(AppState& app, uint32_t) {
  app.rawLog.clear();
  repaintNow(app);
}

bool isDisconnected(const AppState& app, uint32_t) { return !app.fix.running; }
bool isConnected(const AppState& app, uint32_t) { return app.fix.running; }
bool isSimulating(const AppState& app, uint32_t) { return app.fix.running && app.fix.simulate; }
bool hasFix(const AppState& app, uint32_t) {
  // The time of a receiver that was unplugged an hour ago is an hour old.
  const uint32_t age = app.platform.clock.tick() - app.shown.lastFixTick;
  return app.fix.running && app.shown.fixSeen && app.shown.fix.fixStatus != 0 && age <= kOldAfterMs;
}
bool isLogState(const AppState& app, uint32_t number) {
  return app.gps.options.logNmea == (number == kLogOn);
}
bool isSimulationMode(const AppState& app, uint32_t number) {
  return app.gps.simulation.mode() == kSimulationModes[number - kFirstSimulationMode];
}

}  // namespace vgps
