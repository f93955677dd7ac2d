#include "app/session/receiver_search.h"

#include "base/texts.h"

namespace vgps {
namespace {

// What the next start connects to. False when the disk did not take it.
bool keepChoice(AppState& app, const SourceChoice& choice) {
  app.settings.port = choice.port;
  app.settings.baudRate = static_cast<int32_t>(choice.speed);
  app.settings.simulate = false;
  app.settings.useGpsApi = false;
  app.settings.useSensorApi = 0;
  return saveSettings(app.config, app.settings, SettingGroup::gps);
}

}  // namespace

void beginReceiverSearch(AppState& app) {
  holdConnection(app);
  if (!app.fix.running) app.fix.close(true);  // a port that opened and took no speed is held still
}

void endReceiverSearch(AppState& app, const std::optional<SourceChoice>& chosen) {
  if (!chosen.has_value()) return resumeConnection(app);
  if (!keepChoice(app, *chosen) && app.config.tellRefusal()) {
    app.platform.window.tellError(textWith(Text::settingsNotWritten, app.config.path()));
  }
  connectReceiver(app, *chosen);
}

}  // namespace vgps
