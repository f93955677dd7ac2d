#include "win32/find_receiver.h"

#include <optional>

#include "app/app_state.h"
#include "app/connection.h"
#include "win32/finder_dialog.h"

namespace vgps {
namespace {

// Where the data of a serial connection come from at this moment; empty without one. Other sources
// hold no port.
std::optional<SourceChoice> serialSourceInUse(const AppState& app) {
  const bool serial = app.fix.running && !app.fix.simulate && app.fix.sensor == nullptr;
  if (!serial) return {};
  const std::string& followed = app.supervisor.portName;  // may have come back elsewhere
  return SourceChoice{.port = followed.empty() ? app.fix.portPath : followed,
                      .speed = app.fix.baudRate};
}

// A chosen receiver is what the next start connects to, in place of any other source.
void keepChoice(AppState& app, const SourceChoice& choice) {
  app.settings.port = choice.port;
  app.settings.baudRate = static_cast<int32_t>(choice.speed);
  app.settings.simulate = false;
  app.settings.useGpsApi = false;
  app.settings.useSensorApi = 0;
  saveSettings(app.config, app.settings, SettingGroup::gps);
}

}  // namespace

void findReceiver(AppState& app, HINSTANCE resources, HWND owner, const FinderSetup& setup) {
  // A receiver that is being looked for has no port open, and goes on being looked for.
  const bool lost = app.supervisor.state == Supervisor::State::lost;
  const auto before = lost ? std::nullopt : serialSourceInUse(app);
  if (before.has_value()) disconnectReceiver(app);
  const auto chosen = runFinder(resources, owner, setup);
  if (chosen.has_value()) keepChoice(app, *chosen);
  const auto& source = chosen.has_value() ? chosen : before;
  // The program may have been ended while the search was open.
  if (source.has_value() && IsWindow(owner)) connectReceiver(app, *source);
}

}  // namespace vgps
