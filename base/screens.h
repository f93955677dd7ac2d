#pragma once

#include <cstdint>

namespace vgps {

// The screens by number, as used in the settings and by other programs. The command that shows a
// screen is 200 plus its number, except for the 3D map, which has the command of its projection.
enum class Screen : int32_t {
  gps = 1,
  map = 4,
  satellites = 5,
  tracks = 6,
  waypoints = 7,
  statistics = 9,
  customMaps = 10,
  sun = 11,
  moon = 12,
  path = 13,
  compass = 14,
  speedometer = 15,
  nearWaypoints = 16,
  contacts = 17,
  spaceWaypoints = 18,
  flight = 19,
  drive = 29,
  sport = 31,
  accelerometer = 32,
  rawLog = 99,
  map3d = 150,
};

}  // namespace vgps
