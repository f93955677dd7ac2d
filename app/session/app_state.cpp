#include "app/session/app_state.h"

#include <utility>

#include "app/session/recording_texts.h"
#include "app/session/timers.h"
#include "base/texts.h"
#include "platform/files.h"

namespace vgps {
namespace {

constexpr uint32_t kNoticeMs = 10000;

}  // namespace

AppState::AppState(Platform platformToUse, const XmlFiles& files)
    : platform(std::move(platformToUse)),
      config({.files = &files}),
      hooks(platform.uiThread, platform.sounds, platform.window, gps.readers.deliveringGeneration),
      gps(hooks, platform.clock),
      fix(gps),
      link(fix, platform.clock),
      recorderHooks(*this),
      recorder(recorderHooks, platform.clock, platform.disk) {
  gps.makePort = platform.makePort;
  gps.listPorts = platform.listPorts;
  gps.sensors = platform.sensors;
}

RecorderPaths SessionRecorderHooks::places() const {
  return {.library = trackLibraryPath(app_.settings.trackStorePath, app_.paths.folder),
          .journal = app_.paths.journal,
          .settings = app_.paths.settings,
          .discarded = app_.paths.journal.empty() ? std::string() : app_.paths.folder};
}

ExclusiveOpener SessionRecorderHooks::opener() const { return app_.platform.disk.open; }

bool SessionRecorderHooks::askToSave() {
  const Recorder& recorder = app_.recorder;
  app_.standingNotice =
      textWith(Text::unsavedTrack, trackTotalsText(recorder.track, recorder.options.distanceUnit));
  repaintNow(app_);
  const bool wanted = askQuestion(app_, Text::askToSave);
  app_.standingNotice.clear();
  return wanted;
}

void SessionRecorderHooks::startTimer() {
  app_.platform.window.setTimer(kTurnTimer, kTurnRecordingMs);
}

void SessionRecorderHooks::stopTimer() { app_.platform.window.killTimer(kTurnTimer); }

void SessionRecorderHooks::playSound(const char* name) { app_.platform.sounds.play(name); }

void SessionRecorderHooks::trackChanged() { repaintThrottled(app_); }

void SessionRecorderHooks::journalRefused(const std::string& path) {
  showNotice(app_, textWith(Text::noJournal, path));
}

bool hasCurrentFix(const AppState& app) {
  constexpr uint32_t kFixHoldsMs = 5000;
  const uint32_t age = app.platform.clock.tick() - app.shown.lastFixTick;
  return app.fix.running && app.shown.fixSeen && app.shown.fix.fixStatus != 0 && age <= kFixHoldsMs;
}

void showNotice(AppState& app, std::string_view text) {
  app.notice = text;
  app.noticeTick = app.platform.clock.tick();
  repaintNow(app);
}

std::string_view currentNotice(const AppState& app) {
  if (!app.standingNotice.empty()) return app.standingNotice;
  const bool fresh = app.platform.clock.tick() - app.noticeTick < kNoticeMs;
  return fresh ? std::string_view(app.notice) : std::string_view();
}

bool askQuestion(AppState& app, Text text) { return app.platform.window.ask(textOf(text)); }

bool repaintThrottled(AppState& app) {
  if (!app.repaints.due(app.platform.clock.tick())) return false;
  app.pendingDisplay.waiting = false;
  app.platform.window.repaint();
  return true;
}

void repaintNow(AppState& app) {
  app.repaints.reset(app.platform.clock.tick());
  repaintThrottled(app);
}

void measureLog(AppState& app) {
  FileStamp stamp;
  app.logBytes = app.gps.options.logNmea && fileStamp(app.gps.log.path, stamp) ? stamp.size : 0;
}

void noteDrawn(AppState& app) {
  const uint64_t came = app.shown.lastByteMicros;
  if (came == 0 || came == app.drawnByteMicros) return;
  app.drawnByteMicros = came;
  app.readoutDelayMicros = app.platform.clock.microseconds() - came;
}

}  // namespace vgps
