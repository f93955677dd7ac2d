#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vgps {

// A reference ellipsoid. Settings store its index in the list.
struct Ellipsoid {
  int32_t identifier;
  const char* name;         // includes trailing blanks
  double equatorialRadius;  // meters
  double eccentricitySquared;
};

inline constexpr size_t kEllipsoids = 24;
inline constexpr int32_t kWgs84 = 23;

std::span<const Ellipsoid, kEllipsoids> ellipsoids();

// The ellipsoid with a stored index; WGS-84 for the placeholder row and for an index out of range.
const Ellipsoid& ellipsoidOf(int32_t index);

}  // namespace vgps
