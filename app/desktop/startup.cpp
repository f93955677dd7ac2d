#include "app/desktop/startup.h"

#include <chrono>
#include <string>
#include <thread>

#include "app/desktop/commands.h"
#include "app/desktop/save_messages.h"
#include "app/desktop/scene_of.h"
#include "app/session/apply_settings.h"
#include "app/session/connection.h"
#include "app/session/timers.h"
#include "app/settings/settings_table.h"
#include "base/texts.h"
#include "platform/files.h"

namespace vgps {
namespace {

constexpr int32_t kStartsBetweenReminders = 20;

// Virus scanners and backup programs may have the file open for a moment, especially right after
// the computer starts.
bool openPatiently(ConfigStore& config, const std::string& path,
                   std::chrono::milliseconds patience) {
  constexpr std::chrono::milliseconds kStep(50);
  bool good = config.open(path);
  const auto isBusy = [&] { return !config.readable() && !config.heldByAnother(); };
  for (auto left = patience; isBusy() && left.count() > 0; left -= kStep) {
    std::this_thread::sleep_for(kStep);
    good = config.open(path);
  }
  return good;
}

void runInstaller(AppState& app, const char* descriptor) {
  const std::string argument = '"' + pathIn(app.paths.folder, descriptor) + '"';
  const bool started = app.platform.runDeviceInstaller && app.platform.runDeviceInstaller(argument);
  if (!started) showNotice(app, textOf(Text::noDeviceInstaller));
}

void simulateTrack(AppState& app, const StartOptions& options) {
  if (!loadSimulationFrom(app, options.trackPath)) {
    const bool named = !options.trackPath.empty();
    showNotice(app, textWith(Text::noSimulationData,
                             named ? options.trackPath : app.recorderHooks.places().library));
    return;
  }
  if (!options.runTrack) return;
  app.gps.simulation.setMode(SimMode::timer);
  connectReceiver(app, {.simulate = true});
}

// A damaged document is left unchanged until the user changes a setting, because it may still be
// repaired. This notice may be hidden by the question that follows, so it does not count as having
// told the user.
void writeCountdown(AppState& app, int32_t starts) {
  app.settings.updateCountdown = starts;
  if (!app.config.isFullyLoaded()) return;
  if (!saveSettings(app.config, app.settings, SettingGroup::update)) {
    showNotice(app, textWith(Text::settingsNotWritten, app.config.path()));
  }
}

}  // namespace

void startClocks(AppState& app) {
  const DateTime local = app.platform.clock.local();
  app.scheme = isNightHour(local) ? ColorScheme::night : ColorScheme::day;
  app.gps.options.utcOffsetMinutes = measureUtcOffset(app.platform.clock.utc(), local);
}

void startSettings(AppState& app, std::chrono::milliseconds patience) {
  if (!openPatiently(app.config, app.paths.settings, patience)) {
    app.platform.window.tellError(app.config.readable()
                                      ? std::string(textOf(Text::settingsDamaged))
                                      : textWith(Text::settingsUnreadable, app.config.path()));
  }
  app.settings = loadSettings(app.config);
  applySettings(app);
  app.gps.options.logNmea = app.settings.logStream;
}

void applyStartOptions(Desktop& app, const StartOptions& options) {
  if (options.installPocketPc) runInstaller(app, "VGPS-AS-WM2003.INI");
  if (options.installMobile5) runInstaller(app, "VGPS-AS-WM5.INI");
  // For this run: the setting stays as it is.
  if (options.log) app.gps.options.logNmea = true;
  if (options.simulateTrack) simulateTrack(app, options);
  if (!options.unknownArguments.empty()) {
    showNotice(app, textWith(Text::unknownArguments, options.unknownArguments));
  }
  if (!options.connects()) return;
  connectReceiver(app, {.port = options.port,
                        .speed = options.speed,
                        .simulate = options.simulate,
                        .walk = options.simulate});
}

void remindOfUpdates(Desktop& app) {
  if (!app.config.readable()) return;  // the countdown is in the unreadable file
  if (app.settings.updateCountdown > 0)
    return writeCountdown(app, app.settings.updateCountdown - 1);
  writeCountdown(app, kStartsBetweenReminders);
  if (askQuestion(app, Text::askForUpdates)) runCommand(app, Command::checkForUpdates);
}

void autoConnect(Desktop& app) {
  if (app.settings.autoConnect && !app.fix.running) runCommand(app, Command::connect);
}

bool startWork(Desktop& app, const StartOptions& options, const std::function<bool()>& isOpen) {
  armStartTimers(app);
  offerRecovery(app);
  if (!isOpen()) return false;
  applyStartOptions(app, options);
  remindOfUpdates(app);
  if (!isOpen()) return false;
  autoConnect(app);
  return true;
}

bool endProgram(AppState& app) {
  if (!app.recorder.closeJournal()) {
    app.platform.window.tellError(textOf(Text::pointsLost));
  }
  if (app.config.save()) return true;
  // In a folder that nobody may write to every start is counted in vain, and the window's place
  // kept; the user need not hear of that at each end.
  constexpr SettingGroup kSilent[] = {SettingGroup::update, SettingGroup::window};
  if (!app.config.changedOnly(kSilent)) {
    app.config.reportSaveFailureOnce(
        [&](std::string_view text) { app.platform.window.tellError(text); });
  }
  return false;
}

}  // namespace vgps
