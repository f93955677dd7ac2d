#include "track/track.h"

namespace vgps {

int64_t startOf(const TrackPoint& first) {
  if (first.receiverUtc != 0) return first.receiverUtc;
  return isCalendarTime(first.utcTime) ? millisecondsOf(first.utcTime).value_or(0) : 0;
}

std::string_view pointName(const Track& track, const TrackPoint& point) {
  if (point.name == 0 || point.name > track.pointNames.size()) return {};
  return track.pointNames[point.name - 1];
}

void setPointName(Track& track, TrackPoint& point, std::string_view name) {
  point.name = 0;
  if (name.empty()) return;
  track.pointNames.emplace_back(name);
  point.name = static_cast<uint32_t>(track.pointNames.size());
}

std::string pointLabel(const Track& track, size_t index) {
  std::string label = "P #" + std::to_string(index + 1);
  if (track.points[index].m != 0) label += " (M)";
  return label;
}

}  // namespace vgps
