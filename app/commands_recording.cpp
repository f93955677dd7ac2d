#include "app/command_handlers.h"
#include "base/texts.h"

// The track that is being recorded.
namespace vgps {
namespace {

constexpr uint32_t kFirstPreset = 1221;

constexpr uint32_t kNotRecording = 722;
constexpr uint32_t kMarkWaits = 723;
constexpr uint32_t kAlreadyRecording = 724;
constexpr uint32_t kPresetChosen = 725;
constexpr uint32_t kWanderExplained = 726;
constexpr uint32_t kSettingsNotWritten = 737;
constexpr uint32_t kFirstPresetName = 741;  // walking, driving, flying

bool samePreset(const RecordingPreset& preset, const RecordingOptions& options) {
  return preset.speed == options.speed && preset.angle == options.angle &&
         preset.altitude == options.altitude;
}

bool begin(AppState& app) {
  if (!app.recording.start()) return false;
  app.recordingHooks.beginJournal();
  return true;
}

}  // namespace

void startRecording(AppState& app, uint32_t) {
  if (!begin(app)) return showNotice(app, textOf(kAlreadyRecording));
  repaintNow(app);
}

void pauseOrResumeRecording(AppState& app, uint32_t) {
  app.recording.pauseOrResume();
  repaintNow(app);
}

void endRecording(AppState& app, uint32_t) {
  app.recording.stop(nullptr, true);
  repaintNow(app);
}

void markPoint(AppState& app, uint32_t) {
  if (!app.recording.mark()) return showNotice(app, textOf(kNotRecording));
  showNotice(app, textWith(kMarkWaits, std::to_string(app.recording.pendingMark())));
}

void recordPointNow(AppState& app, uint32_t) {
  if (app.track.state != kRecording) return showNotice(app, textOf(kNotRecording));
  app.recording.requestPoint();
}

// Into the settings as well, so that the recording dialog shows it. A running recording keeps the
// thresholds it began with.
void choosePreset(AppState& app, uint32_t number) {
  const RecordingPreset& preset = kRecordingPresets[number - kFirstPreset];
  applyPreset(preset, app.recordingOptions);
  forgetThresholds(app.track);
  app.settings.recordMinSpeed = preset.speed;
  app.settings.recordAngle = preset.angle;
  app.settings.recordAltitude = preset.altitude;
  if (!saveSettings(app.config, app.settings, SettingGroup::recording) &&
      app.config.tellRefusal()) {
    return showNotice(app, textWith(kSettingsNotWritten, app.config.path()));
  }
  showNotice(app, textWith(kPresetChosen, textOf(kFirstPresetName + number - kFirstPreset)));
}

void wanderAround(AppState& app, uint32_t number) {
  app.platform.window.tell(textOf(kWanderExplained));
  startRecording(app, number);
}

bool isIdle(const AppState& app, uint32_t) { return app.track.state == kIdle; }
bool isNotIdle(const AppState& app, uint32_t) { return app.track.state != kIdle; }
bool isNotPlaying(const AppState& app, uint32_t) { return app.track.state != kPlaying; }
bool isPaused(const AppState& app, uint32_t) { return app.track.state == kPaused; }
bool takesMarks(const AppState& app, uint32_t) {
  return app.track.state == kRecording || app.track.state == kPaused;
}
bool isPreset(const AppState& app, uint32_t number) {
  return samePreset(kRecordingPresets[number - kFirstPreset], app.recordingOptions);
}

}  // namespace vgps
