#include "library/track_store.h"
#include "track/track_statistics.h"

namespace vgps {

TrackSummary summaryOf(const TrackSums& sums) {
  TrackSummary summary;
  summary.points = sums.points();
  summary.kilometers = sums.kilometers();
  summary.date = sums.firstTime();
  if (const auto times = sums.times()) summary.seconds = static_cast<int64_t>(times->seconds);
  if (const auto bounds = sums.bounds()) summary.bounds = *bounds;
  return summary;
}

TrackSummary summaryOf(const Track& track) {
  TrackSums sums;
  for (const TrackPoint& point : track.points) sums.add(point);
  TrackSummary summary = summaryOf(sums);
  summary.name = track.name;
  summary.startUtc = track.startUtc;
  summary.recording = track.recording;
  return summary;
}

}  // namespace vgps
