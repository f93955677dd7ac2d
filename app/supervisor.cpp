#include "app/supervisor.h"

#include <algorithm>
#include <vector>

#include "app/app_state.h"
#include "app/connection.h"
#include "base/texts.h"

namespace vgps {
namespace {

// The 5-second timer comes a little early or late.
constexpr uint32_t kTimerJitterMs = 500;

constexpr uint32_t kSilent = 738;
constexpr uint32_t kUnplugged = 739;

std::vector<PortName> presentPorts(const AppState& app) {
  return app.platform.listPorts ? app.platform.listPorts() : std::vector<PortName>();
}

// Under which name the device is there now: its old one when nothing better is known, none when
// another device has that.
std::string currentName(const AppState& app) {
  const Supervisor& supervisor = app.supervisor;
  if (supervisor.identity.empty()) return supervisor.portName;
  std::string name = supervisor.portName;
  for (const PortName& port : presentPorts(app)) {
    if (port.identity == supervisor.identity) return port.name;
    if (port.name == supervisor.portName && !port.identity.empty()) name.clear();
  }
  return name;
}

void tryAgain(AppState& app) {
  Supervisor& supervisor = app.supervisor;
  supervisor.lastAttemptTick = app.platform.clock.tick();
  ++supervisor.attempts;
  // The old handle first: a device that is still there could not be opened beside it.
  app.fix.dropPort();
  const std::string name = currentName(app);
  if (name.empty() || !app.fix.replacePort(name)) return;
  supervisor.portName = name;
  app.sourceName = serialSourceName(name, supervisor.speed);
}

bool hasGone(const AppState& app) {
  if (app.fix.portFailed) return true;
  return app.platform.clock.tick() - app.supervisor.lastBytesTick >= kLostAfterMs;
}

}  // namespace

void superviseConnection(AppState& app, const std::string& portName, uint32_t speed) {
  Supervisor& supervisor = app.supervisor;
  supervisor = {.state = Supervisor::State::watching,
                .portName = portName,
                .speed = speed,
                .lastBytesTick = app.platform.clock.tick()};
  for (const PortName& port : presentPorts(app)) {
    if (port.name == portName) supervisor.identity = port.identity;
  }
}

void endSupervision(AppState& app) { app.supervisor = {}; }

void noteBytes(AppState& app) {
  Supervisor& supervisor = app.supervisor;
  supervisor.lastBytesTick = app.platform.clock.tick();
  if (supervisor.state != Supervisor::State::lost) return;
  supervisor.state = Supervisor::State::watching;
  supervisor.attempts = 0;
  app.platform.sounds.play("OK");
}

void checkConnection(AppState& app) {
  Supervisor& supervisor = app.supervisor;
  if (supervisor.state == Supervisor::State::off || !app.fix.running) return;
  if (!app.settings.reconnect) {
    // Switched off while the port was being tried again: it stays closed, and that is said.
    if (supervisor.state == Supervisor::State::lost) disconnectReceiver(app);
    return;
  }
  if (supervisor.state == Supervisor::State::watching) {
    if (!hasGone(app)) return;
    supervisor.state = Supervisor::State::lost;
    app.platform.sounds.play("ERR2");
    showNotice(app, textWith(app.fix.portFailed ? kUnplugged : kSilent, supervisor.portName));
    tryAgain(app);
  } else if (app.platform.clock.tick() - supervisor.lastAttemptTick >=
             kRetryEveryMs - kTimerJitterMs) {
    tryAgain(app);
  }
}

}  // namespace vgps
