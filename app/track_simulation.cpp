#include "app/track_simulation.h"

#include <cstdio>

#include "track/track_file.h"

namespace vgps {

std::vector<std::string> simulationLines(const Track& track) {
  std::vector<std::string> lines;
  lines.reserve(track.points.size());
  for (const TrackPoint& point : track.points) {
    const DateTime& utc = point.utcTime;
    char line[200];
    std::snprintf(line, sizeof line, "$GPRMCX,%02u%02u%02u.%03u,A,%f,%f,%f,%f,%f",
                  static_cast<unsigned>(utc.hour), static_cast<unsigned>(utc.minute),
                  static_cast<unsigned>(utc.second), static_cast<unsigned>(utc.millisecond),
                  point.longitude, point.latitude, point.altitude, point.course, point.speedKmh);
    lines.emplace_back(line);
  }
  return lines;
}

bool simulationFromFile(const std::string& path, std::vector<std::string>& lines) {
  Track track;
  constexpr int32_t kKilometresPerHour = 0;
  const TrackLoading loading = loadTrackFile(path, kKilometresPerHour, track);
  if (loading != TrackLoading::whole && loading != TrackLoading::damaged) return false;
  lines = simulationLines(track);
  return !lines.empty();
}

}  // namespace vgps
