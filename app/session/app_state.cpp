#include "app/session/app_state.h"

#include <utility>

#include "base/texts.h"

namespace vgps {
namespace {

constexpr uint32_t kNoticeMs = 10000;

}  // namespace

AppState::AppState(Platform platformToUse, const XmlFiles& files)
    : platform(std::move(platformToUse)),
      config(files),
      hooks(platform.door, platform.sounds, platform.window, gps.readers.speaking),
      gps(hooks, platform.clock),
      fix(gps),
      link(fix, platform.clock),
      recordingHooks(*this),
      recording(track, recordingOptions, recordingHooks, platform.clock),
      library(platform.disk) {
  gps.makePort = platform.makePort;
  gps.listPorts = platform.listPorts;
  gps.sensors = platform.sensors;
}

void showNotice(AppState& app, std::string_view text) {
  app.notice = text;
  app.noticeTick = app.platform.clock.tick();
  repaintNow(app);
}

std::string_view currentNotice(const AppState& app) {
  const bool fresh = app.platform.clock.tick() - app.noticeTick < kNoticeMs;
  return fresh ? std::string_view(app.notice) : std::string_view();
}

bool askQuestion(AppState& app, Text text) { return app.platform.window.ask(textOf(text)); }

bool repaintThrottled(AppState& app) {
  if (!app.repaints.due(app.platform.clock.tick())) return false;
  app.news.waiting = false;
  app.platform.window.repaint();
  return true;
}

void repaintNow(AppState& app) {
  app.repaints.reset(app.platform.clock.tick());
  repaintThrottled(app);
}

void noteDrawn(AppState& app) {
  const uint64_t came = app.shown.lastByteMicros;
  if (came == 0 || came == app.drawnByteMicros) return;
  app.drawnByteMicros = came;
  app.readoutDelayMicros = app.platform.clock.microseconds() - came;
}

}  // namespace vgps
