#include "app/desktop/dialog_context.h"

#include "app/desktop/command.h"
#include "app/session/apply_settings.h"
#include "app/settings/settings_table.h"
#include "gps/port_search.h"

namespace vgps {
namespace {

// The map follows the recording options a little later; everything else is shown immediately.
void followDialog(AppState& app, const Dialog& dialog) {
  applySettings(app);
  if (dialog.command == Command::firstRecording) {
    app.settings.recordingExplained = true;
    app.config.put(*Setting(&Settings::recordingExplained), app.settings);
    app.config.save();
  }
  const bool recording = dialog.command == Command::recordingOptions;
  if (recording) forgetThresholds(app.recorder.track);
  if (!recording || app.repaints.due(app.platform.clock.tick())) app.platform.window.repaint();
}

PortSearch beginSearch(AppState& app, uint32_t speed) {
  app.link.close(true);
  app.platform.window.repaint();
  // The search may hang in a port for a long time, so it must not refer to `app`.
  return [makePort = app.platform.makePort, speed](const std::function<bool(uint32_t)>& cancelled) {
    return scanPorts(makePort, speed, cancelled);
  };
}

}  // namespace

DialogContext dialogContextOf(AppState& app) {
  refreshSettings(app);
  return {
      .store = app.config,
      .settings = app.settings,
      .ports = app.platform.listPorts ? app.platform.listPorts() : std::vector<PortName>{},
      .saved = [&app](const Dialog& dialog) { followDialog(app, dialog); },
      .night = app.scheme == ColorScheme::night,
      .beginPortSearch = [&app](uint32_t speed) { return beginSearch(app, speed); },
  };
}

}  // namespace vgps
