#include "formats/collection.h"

#include "geo/units.h"
#include "platform/clock.h"

namespace vgps {

CollectedPoint ExchangeCollection::collected(const ExchangePoint& point) {
  CollectedPoint kept{.longitude = point.longitude,
                      .latitude = point.latitude,
                      .altitude = point.altitude,
                      .utc = point.utc,
                      .hasAltitude = point.hasAltitude,
                      .hasSpeed = point.speed.has_value(),
                      .hasCourse = point.course.has_value()};
  kept.speed = static_cast<float>(point.speed.value_or(0));
  kept.course = static_cast<float>(point.course.value_or(0));
  if (point.hasName) {
    // Points of a track often all have one name.
    if (names_.empty() || names_.back() != point.name) names_.emplace_back(point.name);
    kept.name = static_cast<uint32_t>(names_.size());
  }
  return kept;
}

bool ExchangeCollection::waypoint(const ExchangePoint& point) {
  waypoints.push_back({collected(point), places_++});
  return true;
}

bool ExchangeCollection::beginPath(PathKind kind, std::string_view name) {
  paths.push_back({.kind = kind, .name = std::string(name), .place = places_++});
  return true;
}

bool ExchangeCollection::beginSegment(bool own) {
  paths.back().segments.push_back({.own = own});
  return true;
}

bool ExchangeCollection::point(const ExchangePoint& point) {
  paths.back().segments.back().points.push_back(collected(point));
  return true;
}

bool ExchangeCollection::endPath(std::string_view name) {
  if (!name.empty()) paths.back().name = name;
  return true;
}

Track trackOf(const ExchangeCollection& file, const CollectedPath& path, int32_t utcOffsetMinutes) {
  Track track;
  track.name = path.name;
  for (const CollectedSegment& segment : path.segments) {
    for (const CollectedPoint& from : segment.points) {
      if (!isPosition(from.longitude, from.latitude)) continue;
      TrackPoint& point = track.points.emplace_back();
      point.longitude = from.longitude;
      point.latitude = from.latitude;
      point.altitude = from.altitude;
      point.utcTime = from.utc;
      if (from.utc.year != 0) point.localTime = localFromUtc(from.utc, utcOffsetMinutes);
      const Speeds speeds = speedsFromKnots(double{from.speed} / kMpsPerKnot);
      point.speedKnots = speeds.knots;
      point.speedMps = speeds.mps;
      point.speedKmh = speeds.kmh;
      point.speedMph = speeds.mph;
      point.course = from.course;
      setPointName(track, point, file.nameOf(from));
    }
  }
  return track;
}

}  // namespace vgps
