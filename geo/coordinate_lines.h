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

// The three lines of the position display. Takes degrees and meters. `format` is a PositionFormat
// (any other value shows degrees, minutes, and seconds), `altitudeUnit` an AltitudeUnit, and
// `ellipsoid` an index into ellipsoids().
CoordinateLines coordinateLines(double longitude, double latitude, double altitude, int32_t format,
                                int32_t altitudeUnit, int32_t ellipsoid);

}  // namespace vgps
