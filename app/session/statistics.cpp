#include "app/session/statistics.h"

namespace vgps {

void countStatistics(Statistics& statistics, const StatisticsInput& now) {
  const uint32_t step = statisticsStepSeconds(statistics);
  statistics.totalSeconds += step;
  if (now.connected) statistics.connectedSeconds += step;
  if (now.trackState != 0) statistics.recordingSeconds += step;
  const bool moving = statistics.movingThreshold < now.speedKmh;
  if (now.speedKnown) {
    (moving ? statistics.tripMovingSeconds : statistics.tripStoppedSeconds) += step;
  }
  if (!statistics.fine) return;
  (moving ? statistics.movingSeconds : statistics.stoppedSeconds) += 1;
  statistics.statSeconds += 1;
}

}  // namespace vgps
