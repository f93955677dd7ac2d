#include <utility>

#include "app/desktop/command_handlers.h"
#include "app/desktop/save_messages.h"
#include "app/session/recording_texts.h"
#include "base/texts.h"

// Commands for the current recording.
namespace vgps {
namespace {

bool samePreset(const RecordingPreset& preset, const RecordingOptions& options) {
  return preset.speed == options.speed && preset.angle == options.angle &&
         preset.altitude == options.altitude;
}

// A track that was opened or saved is another one than what is recorded next, unless the user says
// so. False when a track is being recorded or played.
bool readyToStart(Desktop& app) {
  Recorder& recorder = app.recorder;
  if (recorder.track.state != kIdle) return false;
  if (recorder.track.points.empty()) return true;
  const std::string_view answers[] = {textOf(Text::continueTrack), textOf(Text::newTrack)};
  const std::string totals = trackTotalsText(recorder.track, recorder.options.distanceUnit);
  const bool isNew = app.window.choose(textWith(Text::askToContinueTrack, totals), answers) == 1;
  // While the question stood, another key may have begun something.
  if (recorder.track.state != kIdle) return false;
  if (isNew) recorder.discardTrack();
  return true;
}

// Before the first recording ever: what most users want is not what the settings begin with.
// Returns false if the user has thought better of it.
bool explainRecording(Desktop& app) {
  if (app.settings.recordingExplained || app.commandFromHotKey) return true;
  const bool time = std::exchange(app.settings.recordTime, true);
  const bool speed = std::exchange(app.settings.recordSpeed, true);
  const bool opened = app.window.openDialog(Command::firstRecording);
  if (app.settings.recordingExplained) return true;
  app.settings.recordTime = time;
  app.settings.recordSpeed = speed;
  return !opened;
}

}  // namespace

void startRecording(Desktop& app, Command) {
  const bool idle = app.recorder.track.state == kIdle;
  if (idle && !explainRecording(app)) return;
  if (!readyToStart(app)) return showNotice(app, textOf(Text::alreadyRecording));
  if (!app.recorder.start()) return showNotice(app, textOf(Text::alreadyRecording));
  repaintNow(app);
}

void pauseOrResumeRecording(Desktop& app, Command) {
  app.recorder.pauseOrResume();
  repaintNow(app);
}

void endRecording(Desktop& app, Command) {
  const SaveResult keeping = app.recorder.stop(true);
  reportSaveResult(app, keeping);
  if (keeping.outcome == SaveResult::Outcome::declined)
    showNotice(app, textOf(Text::discardedKept));
  repaintNow(app);
}

void markPoint(Desktop& app, Command) {
  if (!app.recorder.mark()) return showNotice(app, textOf(Text::notRecording));
  showNotice(app,
             textWith(Text::markWaits, std::to_string(app.recorder.recording().pendingMark())));
}

void recordPointNow(Desktop& app, Command) {
  if (app.recorder.track.state != kRecording) return showNotice(app, textOf(Text::notRecording));
  if (app.recorder.options.manual) return app.recorder.requestPoint();
  if (!app.recorder.recordNow(app.shown.fix)) return showNotice(app, textOf(Text::noValidFix));
  showNotice(app,
             textWith(Text::positionRecorded, std::to_string(app.recorder.track.points.size())));
}

// Also stored in the settings, so that the recording dialog shows it. A running recording keeps its
// thresholds.
void choosePreset(Desktop& app, Command command) {
  const RecordingPreset& preset = kRecordingPresets[command - Command::presetWalking];
  applyPreset(preset, app.recorder.options);
  forgetThresholds(app.recorder.track);
  app.settings.recordMinSpeed = preset.speed;
  app.settings.recordAngle = preset.angle;
  app.settings.recordAltitude = preset.altitude;
  saveSettings(app.config, app.settings, SettingGroup::recording);
  if (app.config.reportSaveFailureOnce([&](std::string_view text) { showNotice(app, text); }))
    return;
  showNotice(app, textWith(Text::presetChosen,
                           textOf(Text::walking + (command - Command::presetWalking))));
}

void wanderAround(Desktop& app, Command command) {
  app.window.tell(textOf(Text::wanderExplained));
  startRecording(app, command);
}

bool isIdle(const AppState& app, Command) { return app.recorder.track.state == kIdle; }
bool isNotIdle(const AppState& app, Command) { return app.recorder.track.state != kIdle; }
bool isNotPlaying(const AppState& app, Command) { return app.recorder.track.state != kPlaying; }
bool isRecording(const AppState& app, Command) { return app.recorder.track.state == kRecording; }
bool isPaused(const AppState& app, Command) { return app.recorder.track.state == kPaused; }
bool takesMarks(const AppState& app, Command) {
  return app.recorder.track.state == kRecording || app.recorder.track.state == kPaused;
}
bool isPreset(const AppState& app, Command command) {
  return samePreset(kRecordingPresets[command - Command::presetWalking], app.recorder.options);
}

}  // namespace vgps
