#include "app/desktop/command_handlers.h"
#include "base/texts.h"

// The track that is being recorded.
namespace vgps {
namespace {

bool samePreset(const RecordingPreset& preset, const RecordingOptions& options) {
  return preset.speed == options.speed && preset.angle == options.angle &&
         preset.altitude == options.altitude;
}

bool begin(Desktop& app) {
  if (!app.recording.start()) return false;
  app.recordingHooks.beginJournal();
  return true;
}

}  // namespace

void startRecording(Desktop& app, Command) {
  if (!begin(app)) return showNotice(app, textOf(Text::alreadyRecording));
  repaintNow(app);
}

void pauseOrResumeRecording(Desktop& app, Command) {
  app.recording.pauseOrResume();
  repaintNow(app);
}

void endRecording(Desktop& app, Command) {
  app.recording.stop(nullptr, true);
  repaintNow(app);
}

void markPoint(Desktop& app, Command) {
  if (!app.recording.mark()) return showNotice(app, textOf(Text::notRecording));
  showNotice(app, textWith(Text::markWaits, std::to_string(app.recording.pendingMark())));
}

void recordPointNow(Desktop& app, Command) {
  if (app.track.state != kRecording) return showNotice(app, textOf(Text::notRecording));
  app.recording.requestPoint();
}

// Into the settings as well, so that the recording dialog shows it. A running recording keeps the
// thresholds it began with.
void choosePreset(Desktop& app, Command command) {
  const RecordingPreset& preset = kRecordingPresets[command - Command::presetWalking];
  applyPreset(preset, app.recordingOptions);
  forgetThresholds(app.track);
  app.settings.recordMinSpeed = preset.speed;
  app.settings.recordAngle = preset.angle;
  app.settings.recordAltitude = preset.altitude;
  if (!saveSettings(app.config, app.settings, SettingGroup::recording) &&
      app.config.tellRefusal()) {
    return showNotice(app, textWith(Text::settingsNotWritten, app.config.path()));
  }
  showNotice(app, textWith(Text::presetChosen,
                           textOf(Text::walking + (command - Command::presetWalking))));
}

void wanderAround(Desktop& app, Command command) {
  app.window.tell(textOf(Text::wanderExplained));
  startRecording(app, command);
}

bool isIdle(const AppState& app, Command) { return app.track.state == kIdle; }
bool isNotIdle(const AppState& app, Command) { return app.track.state != kIdle; }
bool isNotPlaying(const AppState& app, Command) { return app.track.state != kPlaying; }
bool isPaused(const AppState& app, Command) { return app.track.state == kPaused; }
bool takesMarks(const AppState& app, Command) {
  return app.track.state == kRecording || app.track.state == kPaused;
}
bool isPreset(const AppState& app, Command command) {
  return samePreset(kRecordingPresets[command - Command::presetWalking], app.recordingOptions);
}

}  // namespace vgps
