#include "app/session/supervisor.h"

#include "app/session/app_state.h"
#include "app/session/connection.h"
#include "base/texts.h"

namespace vgps {
namespace {

// The 5-second timer comes a little early or late.
constexpr uint32_t kTimerJitterMs = 500;

// Said again with each attempt, so that it stands for as long as it is true; other news go first. A
// port that is not there needs no words: the state says that it is tried again.
void tellReason(AppState& app, PortError error) {
  if (error == PortError::notThere) return;
  const std::string text = portProblem(error, app.supervisor.portName);
  if (currentNotice(app).empty() || currentNotice(app) == text) showNotice(app, text);
}

// The device may have come back under another name.
void followName(AppState& app, const PortAttempt& attempt) {
  Supervisor& supervisor = app.supervisor;
  if (attempt.newName.empty() || attempt.newName == supervisor.portName) return;
  supervisor.portName = attempt.newName;
  app.fix.setPort(supervisor.portName, supervisor.speed);
  app.sourceName = serialSourceName(supervisor.portName, supervisor.speed);
}

void followAttempt(AppState& app) {
  const PortAttempt attempt = app.fix.portAttempt();
  followName(app, attempt);
  if (attempt.state == PortAttempt::State::failed) tellReason(app, attempt.error);
  if (attempt.state == PortAttempt::State::waiting) return;
  if (!app.settings.reconnect) {
    // Switched off while the port was being tried again: one that is open is kept, any other is
    // given up, and that is said.
    const bool works = attempt.state == PortAttempt::State::opened && !app.fix.portFailed;
    if (works) {
      app.supervisor.state = Supervisor::State::watching;
    } else {
      disconnectReceiver(app);
    }
    return;
  }
  // From its end: an opening may take longer than the time between two of them.
  const uint32_t passed = app.platform.clock.tick() - attempt.tick;
  if (passed >= kRetryEveryMs - kTimerJitterMs) app.fix.wantPort();
}

bool hasGone(const AppState& app) {
  if (app.fix.portFailed) return true;
  return app.platform.clock.tick() - app.supervisor.lastBytesTick >= kLostAfterMs;
}

}  // namespace

void superviseConnection(AppState& app, const std::string& portName, uint32_t speed) {
  app.supervisor = {.state = Supervisor::State::watching,
                    .portName = portName,
                    .speed = speed,
                    .lastBytesTick = app.platform.clock.tick()};
}

void endSupervision(AppState& app) { app.supervisor = {}; }

void holdConnection(AppState& app) {
  if (app.supervisor.state == Supervisor::State::off) return;
  app.supervisor.state = Supervisor::State::held;
  app.fix.dropPort();
}

void resumeConnection(AppState& app) {
  if (app.supervisor.state != Supervisor::State::held) return;
  app.supervisor.state = Supervisor::State::lost;
  app.fix.wantPort();
}

void noteBytes(AppState& app) {
  Supervisor& supervisor = app.supervisor;
  supervisor.lastBytesTick = app.platform.clock.tick();
  if (supervisor.state != Supervisor::State::lost) return;
  supervisor.state = Supervisor::State::watching;
  followName(app, app.fix.portAttempt());
  app.platform.sounds.play("OK");
}

void checkConnection(AppState& app) {
  Supervisor& supervisor = app.supervisor;
  if (!app.fix.running) return;
  if (supervisor.state == Supervisor::State::lost) {
    followAttempt(app);
  } else if (supervisor.state == Supervisor::State::watching && app.settings.reconnect &&
             hasGone(app)) {
    supervisor.state = Supervisor::State::lost;
    app.platform.sounds.play("ERR2");
    showNotice(app, textWith(app.fix.portFailed ? Text::unpluggedRetrying : Text::noDataRetrying,
                             supervisor.portName));
    app.fix.wantPort();
  }
}

}  // namespace vgps
