#include "formats/simulation.h"

#include <algorithm>

#include "files/input_file.h"
#include "files/whole_file.h"
#include "formats/collection.h"
#include "formats/convert.h"
#include "formats/reading.h"
#include "geo/geodesic.h"
#include "geo/units.h"
#include "track/track_file.h"
#include "track/track_simulation.h"

namespace vgps {
namespace {

Position placeOf(const TrackPoint& point) {
  return {point.longitude, point.latitude, point.altitude};
}

// From each point to the next; the last one goes on as before.
void fillCourses(PointList& points) {
  for (size_t i = 0; i + 1 < points.size(); ++i) {
    points[i].course = geodesicBearing(placeOf(points[i]), placeOf(points[i + 1]));
  }
  if (points.size() > 1) points.back().course = points[points.size() - 2].course;
}

void setSpeed(TrackPoint& point, double kmh) {
  const Speeds speeds = speedsFromKnots(kmh / kKmhPerKnot);
  point.speedKnots = speeds.knots;
  point.speedMps = speeds.mps;
  point.speedKmh = speeds.kmh;
  point.speedMph = speeds.mph;
}

void fillSpeeds(PointList& points) {
  constexpr double kSecondsPerHour = 3600;
  for (size_t i = 0; i + 1 < points.size(); ++i) {
    const TrackPoint& next = points[i + 1];
    if (points[i].utcTime.year == 0 || next.utcTime.year == 0) continue;
    const auto seconds = secondsOf(next.utcTime) - secondsOf(points[i].utcTime);
    if (seconds <= 0) continue;
    const double kilometers = geodesicKilometers(placeOf(points[i]), placeOf(next));
    setSpeed(points[i], kilometers * kSecondsPerHour / static_cast<double>(seconds));
  }
  if (points.size() > 1) setSpeed(points.back(), points[points.size() - 2].speedKmh);
}

bool knows(const PointList& points, double TrackPoint::*value) {
  return std::any_of(points.begin(), points.end(),
                     [value](const TrackPoint& point) { return point.*value != 0; });
}

bool firstTrack(const std::string& path, int32_t utcOffsetMinutes, Track& track) {
  const TrackLoading loading = loadTrackFile(path, kKmh, track);
  if (loading == TrackLoading::whole || loading == TrackLoading::damaged) return true;
  ExchangeCollection file;
  if (!isUsable(readExchangeFile(path, file, kKmh, utcOffsetMinutes).end)) return false;
  for (const CollectedPath& candidate : file.paths) {
    track = trackOf(file, candidate, utcOffsetMinutes);
    if (!track.points.empty()) return true;
  }
  return false;
}

}  // namespace

bool simulationFromFile(const std::string& path, int32_t utcOffsetMinutes,
                        std::vector<std::string>& lines) {
  Track track;
  if (!firstTrack(path, utcOffsetMinutes, track)) return false;
  if (!knows(track.points, &TrackPoint::course)) fillCourses(track.points);
  if (!knows(track.points, &TrackPoint::speedKmh)) fillSpeeds(track.points);
  lines = simulationLines(track);
  return !lines.empty();
}

bool simulationFromLog(const std::string& path, std::vector<std::string>& lines) {
  std::string text;
  if (!readWholeFile(path, text)) return false;
  lines.clear();
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find_first_of("\r\n", at), text.size());
    if (text[at] == '$') lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return !lines.empty();
}

bool isLogName(const std::string& path) {
  std::string lower = path;
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  const char* const kEndings[] = {".nmea", ".log", ".txt", ".sirf"};
  return std::any_of(std::begin(kEndings), std::end(kEndings),
                     [&](const char* ending) { return lower.ends_with(ending); });
}

}  // namespace vgps
