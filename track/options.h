#pragma once

#include <cstdint>
#include <span>

namespace vgps {

struct Track;

// The settings for recording, track files, and thinning. The defaults are those of the recording
// dialog.
struct RecordingOptions {
  int32_t speed = 5;             // km/h; slower fixes are not recorded
  int32_t angle = 10;            // degrees
  int32_t altitude = 30;         // meters
  int32_t normalizeMeters = 15;  // for thinning; 0 means 15
  bool recordCell = false;
  bool drawPath = false;
  bool recordSpeed = false;
  bool recordTime = false;
  bool recordCourse = false;
  int32_t everyNth = 0;  // above 0: that many fixes are left out between two points
  // A moving receiver is recorded at the latest after so many...
  int32_t everySeconds = 0;  // ...seconds; 0: off
  int32_t everyMeters = 0;   // ...meters; 0: off
  int32_t bes = 0;           // kept with the track
  bool jumpFilter = false;   // fixes that cannot have been reached are left out
  bool manual = false;       // only fixes that the user asks for are recorded

  // Display units, also used for a file's speeds and for the running distances.
  int32_t speedUnit = 0;     // SpeedUnit
  int32_t distanceUnit = 0;  // DistanceUnit
};

// Thresholds for one kind of movement.
struct RecordingPreset {
  const char* name;
  int32_t speed;     // km/h
  int32_t angle;     // degrees
  int32_t altitude;  // meters
};
inline constexpr RecordingPreset kRecordingPresets[] = {
    {"Walking", 1, 20, 10},
    {"Driving", 5, 10, 30},
    {"Flying", 50, 5, 100},
};

void applyPreset(const RecordingPreset& preset, RecordingOptions& options);

// Clears the thresholds that an idle track took from the options, so that the next start takes the
// current ones. Called by the recording dialog and the presets. A running recording keeps its
// thresholds.
void forgetThresholds(Track& track);

}  // namespace vgps
