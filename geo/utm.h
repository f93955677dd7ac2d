#pragma once

#include <cstdint>
#include <string>

namespace vgps {

struct UtmPosition {
  double northing = 0;  // metres
  double easting = 0;   // metres
  int32_t zone = 0;     // 1 to 60
  char band = '\0';     // 'C' to 'X' without I and O; none outside 80 S to 84 N

  // "32U"; the number alone without a band.
  std::string zoneText() const;
};

// The grid position on the ellipsoid of that index (see ellipsoids.h). Degrees; any longitude is
// taken into -180..180. The transverse Mercator series of J. P. Snyder, "Map Projections: A
// Working Manual", USGS Professional Paper 1395 (1987), equations 8-9 to 8-15 and 3-21, with the
// zones of south-west Norway and Svalbard.
UtmPosition utmFromDegrees(int32_t ellipsoid, double latitude, double longitude);

}  // namespace vgps
