#pragma once

#include <cstdint>
#include <string>

namespace vgps {

enum PositionFormat : int32_t {
  kDegreesMinutesSeconds = 0,
  kDecimalDegrees = 1,
  kUtmGrid = 2,
};

struct CoordinateLines {
  std::string x;  // "X: 11 31' 0.000''E", "X: 11.5166667", "X: 687299"
  std::string y;  // "Y: 48 7' 2.279''N", "Y: 48.1173000", "Y: 5332401"
  std::string z;  // "Z: 545.00m"
};

// The three lines of the position display. Degrees and metres; `format` is a PositionFormat (others
// show degrees, minutes and seconds), `altitudeUnit` an AltitudeUnit, `ellipsoid` an index.
CoordinateLines coordinateLines(double longitude, double latitude, double altitude, int32_t format,
                                int32_t altitudeUnit, int32_t ellipsoid);

}  // namespace vgps
