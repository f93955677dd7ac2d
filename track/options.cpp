#include "track/options.h"

#include "track/track.h"

namespace vgps {

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
