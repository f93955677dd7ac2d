#include "track/options.h"

#include "track/track.h"

namespace vgps {
namespace {

void replaceZero(int32_t& value, int32_t standard) {
  if (value == 0) value = standard;
}

}  // namespace

void replaceZeroes(RecordingOptions& options) {
  const RecordingOptions standard;
  replaceZero(options.speed, standard.speed);
  replaceZero(options.angle, standard.angle);
  replaceZero(options.altitude, standard.altitude);
  replaceZero(options.normalizeMetres, standard.normalizeMetres);
}

void applyPreset(const RecordingPreset& preset, RecordingOptions& options) {
  options.speed = preset.speed;
  options.angle = preset.angle;
  options.altitude = preset.altitude;
}

void forgetThresholds(Track& track) {
  if (track.state != kIdle) return;
  track.speedThreshold = 0;
  track.angleThreshold = 0;
  track.altitudeThreshold = 0;
}

}  // namespace vgps
