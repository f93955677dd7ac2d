#include "app/session/apply_settings.h"

#include <array>
#include <utility>

namespace vgps {
namespace {

void applyToReceiver(AppState& app) {
  const Settings& settings = app.settings;
  GpsOptions& options = app.gps.options;
  options.speedUnit = settings.speedUnit;
  options.altitudeFromGeoidField = settings.altitudeFromGeoidField;
  options.epochSentenceSetting = settings.epochSentenceSetting;
  options.talkers = settings.talkers;
  app.gps.sensorIdentifier = settings.sensorIdentifier;
}

}  // namespace

RecordingOptions recordingOptionsOf(const Settings& settings) {
  RecordingOptions options;
  options.speed = settings.recordMinSpeed;
  options.angle = settings.recordAngle;
  options.altitude = settings.recordAltitude;
  options.normalizeMeters = settings.normalizeMeters;
  options.recordCell = settings.recordCell;
  options.drawPath = settings.drawPath;
  options.recordSpeed = settings.recordSpeed;
  options.recordTime = settings.recordTime;
  options.recordCourse = settings.recordCourse;
  options.everyNth = settings.recordEvery;
  options.everySeconds = settings.recordEverySeconds;
  options.everyMeters = settings.recordEveryMeters;
  options.jumpFilter = settings.jumpFilter;
  options.bes = settings.recordBes;
  options.manual = settings.manualRecording;
  options.speedUnit = settings.speedUnit;
  options.distanceUnit = settings.longDistanceUnit;
  return options;
}

void applySettings(AppState& app) {
  applyToReceiver(app);
  app.recorder.options = recordingOptionsOf(app.settings);
  app.frameSkip = app.settings.frameSkip;
}

void refreshSettings(AppState& app) {
  if (refreshSettings(app.config, app.settings)) applySettings(app);
}

const std::string& soundFile(const Settings& settings, std::string_view sound) {
  constexpr std::array<std::pair<std::string_view, std::string Settings::*>, 5> kFiles = {{
      {"SPD", &Settings::soundSpeed},
      {"OK", &Settings::soundOk},
      {"ERR2", &Settings::soundError},
      {"TURN", &Settings::soundTurn},
      {"FORBIDDEN", &Settings::soundZone},
  }};
  static const std::string kNone;
  for (const auto& [name, member] : kFiles) {
    if (name == sound) return settings.*member;
  }
  return kNone;
}

}  // namespace vgps
