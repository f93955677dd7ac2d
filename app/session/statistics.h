#pragma once

#include <cstdint>

namespace vgps {

// How long the program has been running, connected, recording, and moving.
struct Statistics {
  uint64_t totalSeconds = 0;
  uint64_t connectedSeconds = 0;
  uint64_t recordingSeconds = 0;  // in every state but idle: paused and playing count as well

  // Counted only in the fine mode, while the statistics screen shows.
  float movingSeconds = 0;
  float stoppedSeconds = 0;
  float statSeconds = 0;
  // The same, counted in every mode while the receiver tells a speed.
  uint64_t tripMovingSeconds = 0;
  uint64_t tripStoppedSeconds = 0;

  float movingThreshold = 0;  // km/h; faster is moving
  bool fine = false;
};

// What the counting looks at.
struct StatisticsInput {
  bool connected = false;
  int32_t trackState = 0;
  double speedKmh = 0;
  bool speedKnown = false;  // it is of now, and of a fix
};

// From one count to the next.
constexpr uint32_t statisticsStepSeconds(const Statistics& statistics) {
  return statistics.fine ? 1 : 5;
}

// One step further.
void countStatistics(Statistics& statistics, const StatisticsInput& now);

}  // namespace vgps
