#pragma once

#include <span>

#include "geo/distance.h"
#include "geo/great_circle.h"

// Distances, courses and areas on the ellipsoid WGS-84, for everything that is measured for a
// person; what is recorded uses `surfaceDistance`. C. F. F. Karney, "Algorithms for geodesics",
// Journal of Geodesy 87 (2013), good to nanometers. Altitudes count for nothing.
namespace vgps {

double geodesicKilometers(const Position& from, const Position& to);

// The course to steer at `from`, degrees true, 0 <= course < 360; 0 when both are one.
double geodesicBearing(const Position& from, const Position& to);

// Where one arrives after `kilometers` on that course. Altitude is kept.
Position geodesicDestination(const Position& from, double bearingDegrees, double kilometers);

// The area inside a closed track, the smaller part of the earth; the last point is joined to the
// first. The square degrees are those of `enclosedArea`. 0 for fewer than three points.
Area geodesicArea(std::span<const Position> points);

}  // namespace vgps
