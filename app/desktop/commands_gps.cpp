#include <utility>

#include "app/desktop/command_handlers.h"
#include "app/session/connection.h"
#include "app/settings/settings_table.h"
#include "base/texts.h"

// Commands for the receiver, its log, and the simulation.
namespace vgps {
namespace {

// For commands 378, 379, and 380.
constexpr SimMode kSimulationModes[] = {SimMode::tapping, SimMode::timer, SimMode::point};

// Keeps the computer's year and milliseconds: many receivers report a wrong year after a week
// rollover, and none is accurate to the millisecond.
DateTime systemTimeFrom(const DateTime& gpsUtc, DateTime systemUtc) {
  systemUtc.month = gpsUtc.month;
  systemUtc.day = gpsUtc.day;
  systemUtc.hour = gpsUtc.hour;
  systemUtc.minute = gpsUtc.minute;
  systemUtc.second = gpsUtc.second;
  return systemUtc;
}

}  // namespace

void connectFromSettings(Desktop& app, Command) { connectReceiver(app, sourceOfSettings(app)); }

// For this run only; the settings do not change.
void connectSimulation(Desktop& app, Command) {
  connectReceiver(app, {.simulate = true, .walk = true});
}

void disconnect(Desktop& app, Command) {
  app.link.close();
  repaintNow(app);
}

void gpsTimeToSystem(Desktop& app, Command) {
  if (!hasFix(app, Command::gpsTimeToSystem)) return showNotice(app, textOf(Text::noValidFix));
  if (app.shown.fix.utcTime.day == 0) return showNotice(app, textOf(Text::noDateYet));
  if (!app.platform.setSystemTime) return showNotice(app, textOf(Text::notAvailable));
  const DateTime time = systemTimeFrom(app.shown.fix.utcTime, app.platform.clock.utc());
  const bool set = app.platform.setSystemTime(time);
  showNotice(app, textOf(set ? Text::clockSet : Text::clockNotSet));
}

void switchLog(Desktop& app, Command command) {
  app.settings.logStream = command == Command::logOn;
  app.gps.options.logNmea = app.settings.logStream;
  app.config.put(*Setting(&Settings::logStream), app.settings);
  measureLog(app);
  repaintNow(app);
}

void chooseSimulationMode(Desktop& app, Command command) {
  app.gps.simulation.setMode(kSimulationModes[command - Command::simulateTapping]);
  repaintNow(app);
}

void stepSimulation(Desktop& app, Command) { app.gps.simulation.step(); }

void clearRawLog(Desktop& app, Command) {
  app.rawLog.clear();
  repaintNow(app);
}

void resetTrip(Desktop& app, Command) {
  resetTrip(app);
  showNotice(app, textOf(Text::tripReset));
}

void pauseRawLog(Desktop& app, Command) {
  app.rawLog.pause(!app.rawLog.isPaused());
  repaintNow(app);
}

void copyRawLog(Desktop& app, Command) { app.window.copyText(app.rawLog.text()); }

bool isDisconnected(const AppState& app, Command) { return !app.fix.running; }
bool isConnected(const AppState& app, Command) { return app.fix.running; }
bool isSimulating(const AppState& app, Command) { return app.fix.running && app.fix.simulate; }
// A time from a receiver that was unplugged an hour ago would be an hour old.
bool hasFix(const AppState& app, Command) { return hasCurrentFix(app); }
bool isLogState(const AppState& app, Command command) {
  return app.gps.options.logNmea == (command == Command::logOn);
}
bool waitsForStep(const AppState& app, Command command) {
  return isSimulating(app, command) && app.gps.simulation.mode() == SimMode::tapping;
}
bool hasRawLog(const AppState& app, Command) { return !app.rawLog.empty(); }
bool showsRawLog(const AppState& app, Command) { return app.currentScreen == Screen::rawLog; }
bool isRawLogPaused(const AppState& app, Command) { return app.rawLog.isPaused(); }
bool isSimulationMode(const AppState& app, Command command) {
  return app.gps.simulation.mode() == kSimulationModes[command - Command::simulateTapping];
}

}  // namespace vgps
