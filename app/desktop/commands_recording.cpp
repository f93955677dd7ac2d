#include "app/desktop/command_handlers.h"
#include "app/desktop/keeping.h"
#include "base/texts.h"

// Commands for the current recording.
namespace vgps {
namespace {

bool samePreset(const RecordingPreset& preset, const RecordingOptions& options) {
  return preset.speed == options.speed && preset.angle == options.angle &&
         preset.altitude == options.altitude;
}

}  // namespace

void startRecording(Desktop& app, Command) {
  if (!app.recorder.start()) return showNotice(app, textOf(Text::alreadyRecording));
  repaintNow(app);
}

void pauseOrResumeRecording(Desktop& app, Command) {
  app.recorder.pauseOrResume();
  repaintNow(app);
}

void endRecording(Desktop& app, Command) {
  tellKeeping(app, app.recorder.stop(true));
  repaintNow(app);
}

void markPoint(Desktop& app, Command) {
  if (!app.recorder.mark()) return showNotice(app, textOf(Text::notRecording));
  showNotice(app,
             textWith(Text::markWaits, std::to_string(app.recorder.recording().pendingMark())));
}

void recordPointNow(Desktop& app, Command) {
  if (app.recorder.track.state != kRecording) return showNotice(app, textOf(Text::notRecording));
  app.recorder.requestPoint();
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
  if (app.config.tellSaveFailure([&](std::string_view text) { showNotice(app, text); })) return;
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
