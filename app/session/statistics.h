#pragma once

#include <cstdint>

namespace vgps {

// How long the program has been running, connected, recording, and moving.
struct Statistics {
  uint64_t totalSeconds = 0;
  uint64_t connectedSeconds = 0;
  uint64_t recordingSeconds = 0;  // in every state except idle, including paused and playing

  // Counted only in fine mode, while the statistics screen is shown.
  float movingSeconds = 0;
  float stoppedSeconds = 0;
  float statSeconds = 0;
  // The same, but counted in every mode while the receiver reports a speed.
  uint64_t tripMovingSeconds = 0;
  uint64_t tripStoppedSeconds = 0;

  float movingThreshold = 0;  // km/h; anything faster counts as moving
  bool fine = false;
};

// What the statistics are computed from.
struct StatisticsInput {
  bool connected = false;
  int32_t trackState = 0;
  double speedKmh = 0;
  bool speedKnown = false;  // the speed is current and from a fix
};

// The time between two calls of countStatistics.
constexpr uint32_t statisticsStepSeconds(const Statistics& statistics) {
  return statistics.fine ? 1 : 5;
}

// Counts one step.
void countStatistics(Statistics& statistics, const StatisticsInput& now);

}  // namespace vgps
