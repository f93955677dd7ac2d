#include "app/session/receiver_search.h"

#include "app/session/connection.h"
#include "app/settings/settings_table.h"

namespace vgps {
namespace {

// What the next start connects to, in place of any other source.
void keepChoice(AppState& app, const FoundReceiver& found) {
  const SourceChoice& choice = found.source;
  app.settings.autoConnect = found.atEveryStart;
  app.config.put(*Setting(&Settings::autoConnect), app.settings);
  app.settings.port = choice.port;
  app.settings.baudRate = static_cast<int32_t>(choice.speed);
  app.settings.simulate = false;
  app.settings.useGpsApi = false;
  app.settings.useSensorApi = 0;
  saveSettings(app.config, app.settings, SettingGroup::gps);
}

}  // namespace

void beginReceiverSearch(AppState& app) { app.link.releasePort(); }

void endReceiverSearch(AppState& app, const std::optional<FoundReceiver>& chosen) {
  if (!chosen.has_value()) return app.link.reclaimPort();
  keepChoice(app, *chosen);
  app.config.reportSaveFailureOnce(
      [&](std::string_view text) { app.platform.window.tellError(text); });
  connectReceiver(app, chosen->source);
}

}  // namespace vgps
