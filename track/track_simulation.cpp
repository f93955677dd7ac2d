#include "track/track_simulation.h"

#include <cmath>
#include <cstdio>

namespace vgps {
namespace {

struct Angle {
  int degrees;
  double minutes;
};

Angle angleOf(double degrees) {
  const double size = std::fabs(degrees);
  const auto whole = static_cast<int>(size);
  return {whole, (size - whole) * 60};
}

// The extended sentence has neither a date nor a validity flag: without this sentence first, there
// would be positions but no fix.
std::string validFix(const TrackPoint& point) {
  const DateTime& utc = point.utcTime;
  const Angle latitude = angleOf(point.latitude);
  const Angle longitude = angleOf(point.longitude);
  char line[200];
  std::snprintf(line, sizeof line,
                "$GPRMC,%02u%02u%02u,A,%02d%07.4f,%c,%03d%07.4f,%c,%.2f,%.1f,%02u%02u%02u,,",
                unsigned{utc.hour}, unsigned{utc.minute}, unsigned{utc.second}, latitude.degrees,
                latitude.minutes, point.latitude < 0 ? 'S' : 'N', longitude.degrees,
                longitude.minutes, point.longitude < 0 ? 'W' : 'E', point.speedKnots, point.course,
                unsigned{utc.day}, unsigned{utc.month}, utc.year % 100U);
  return line;
}

std::string extendedPosition(const TrackPoint& point) {
  const DateTime& utc = point.utcTime;
  char line[400];
  std::snprintf(line, sizeof line, "$GPRMCX,%02u%02u%02u.%03u,A,%f,%f,%f,%f,%f", unsigned{utc.hour},
                unsigned{utc.minute}, unsigned{utc.second}, unsigned{utc.millisecond},
                point.longitude, point.latitude, point.altitude, point.course, point.speedKmh);
  return line;
}

}  // namespace

std::vector<std::string> simulationLines(const Track& track) {
  std::vector<std::string> lines;
  lines.reserve(track.points.size() + 1);
  for (const TrackPoint& point : track.points) {
    if (lines.empty()) lines.push_back(validFix(point));
    lines.push_back(extendedPosition(point));
  }
  return lines;
}

}  // namespace vgps
