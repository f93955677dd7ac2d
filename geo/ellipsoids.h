#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vgps {

// A figure of the earth. Its place in the list is what settings store.
struct Ellipsoid {
  int32_t identifier;
  const char* name;         // trailing blanks belong to it
  double equatorialRadius;  // metres
  double eccentricitySquared;
};

inline constexpr size_t kEllipsoids = 24;
inline constexpr int32_t kWgs84 = 23;

std::span<const Ellipsoid, kEllipsoids> ellipsoids();

// The row of a stored index; WGS-84 for the placeholder and for anything outside the list.
const Ellipsoid& ellipsoidOf(int32_t index);

}  // namespace vgps
