#include "app/win32/find_receiver.h"

#include "app/session/app_state.h"
#include "app/session/connection.h"
#include "app/win32/finder_dialog.h"
#include "base/texts.h"

namespace vgps {
namespace {

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
  app.link.hold();
  const auto chosen = runFinder(resources, owner, setup);
  if (chosen.has_value()) keepChoice(app, *chosen);
  if (!IsWindow(owner)) return;  // the program was ended while the search was open
  if (chosen.has_value()) {
    app.config.tellRefusal([&](std::string_view text) { app.platform.window.tellError(text); });
    connectReceiver(app, *chosen);
  } else {
    app.link.resume();
  }
}

}  // namespace vgps
