#pragma once

#include <cstdint>
#include <string>

namespace vgps {

struct UtmPosition {
  double northing = 0;  // meters
  double easting = 0;   // meters
  int32_t zone = 0;     // 1 to 60
  char band = '\0';     // 'C' to 'X' without I and O; '\0' outside 80 S to 84 N

  // "32U"; only the number if there is no band.
  std::string zoneText() const;
};

// The UTM position on the ellipsoid with this index (see ellipsoids.h). Takes degrees; any
// longitude is normalized to -180..180. Uses the transverse Mercator series of J. P. Snyder, "Map
// Projections: A Working Manual", USGS Professional Paper 1395 (1987), equations 8-9 to 8-15 and
// 3-21, and the special zones of southwest Norway and Svalbard.
UtmPosition utmFromDegrees(int32_t ellipsoid, double latitude, double longitude);

}  // namespace vgps
