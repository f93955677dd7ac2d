#include "track/thinning.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "geo/distance.h"
#include "geo/great_circle.h"

namespace vgps {
namespace {

constexpr int32_t kStandardMeters = 15;

Position positionOf(const TrackPoint& point) {
  return {point.longitude, point.latitude, point.altitude};
}

double kilometers(const TrackPoint& a, const TrackPoint& b) {
  return pointDistance(positionOf(a), positionOf(b), 0, 0, false);
}

// Removes every interior point for which `removable` returns true. Its arguments: the last point
// kept, the point itself, the next point, and the index.
template <class Removable>
void removeInterior(Track& track, Removable removable) {
  PointList& points = track.points;
  if (points.size() < 3) return;
  std::vector<uint32_t> places(track.attachments.empty() ? 0 : points.size());
  size_t kept = 1;
  for (size_t i = 1; i < points.size(); ++i) {
    const bool last = i + 1 == points.size();
    if (last || !removable(points[kept - 1], points[i], points[i + 1], i)) {
      points[kept++] = points[i];
    }
    if (!places.empty()) places[i] = static_cast<uint32_t>(kept - 1);
  }
  points.resize(kept);
  for (TrackAttachment& attachment : track.attachments) {
    attachment.point = places[std::min<size_t>(attachment.point, places.size() - 1)];
  }
}

bool crowded(const TrackPoint& previous, const TrackPoint& point, const TrackPoint& next,
             double mostKilometers) {
  if (previous.c != point.c || point.c != next.c) return false;
  const double around =
      kilometers(previous, point) + kilometers(point, next) + kilometers(previous, next);
  return around <= mostKilometers;
}

// The change of course at `point`, 0 to pi.
double turnAt(const TrackPoint& previous, const TrackPoint& point, const TrackPoint& next) {
  const double change = std::fabs(initialBearing(positionOf(point), positionOf(next)) -
                                  initialBearing(positionOf(previous), positionOf(point)));
  return (change > 180 ? 360 - change : change) * (std::numbers::pi / 180);
}

std::vector<bool> pointsWithAttachments(const Track& track) {
  std::vector<bool> has(track.points.size());
  for (const TrackAttachment& attachment : track.attachments) {
    if (attachment.point < has.size()) has[attachment.point] = true;
  }
  return has;
}

}  // namespace

void normalize(Track& track, const RecordingOptions& options) {
  const int32_t meters = options.normalizeMeters == 0 ? kStandardMeters : options.normalizeMeters;
  removeInterior(track,
                 [&](const TrackPoint& previous, const TrackPoint& point, const TrackPoint& next,
                     size_t) { return crowded(previous, point, next, meters / 1000.0); });
  const double degrees = track.angleThreshold != 0 ? double{track.angleThreshold} : options.angle;
  const std::vector<bool> attached = pointsWithAttachments(track);
  removeInterior(track, [&](const TrackPoint& previous, const TrackPoint& point,
                            const TrackPoint& next, size_t index) {
    if (point.m != 0 || point.s != 0 || attached[index]) return false;
    return turnAt(previous, point, next) <= degrees * kRadiansPerDegree;
  });
}

}  // namespace vgps
