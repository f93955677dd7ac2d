#pragma once

#include <span>
#include <string>

#include "geo/distance.h"

// Bearings and areas on the same sphere as geo/distance.h, but in double precision because nothing
// stored depends on them. Formulas: E. Williams, "Aviation Formulary".
namespace vgps {

// The course to steer from `from` to `to`, degrees true, 0 <= course < 360; 0 if both are the same.
double initialBearing(const Position& from, const Position& to);

// The position reached after `kilometers` on that course. The altitude stays the same.
Position destination(const Position& from, double bearingDegrees, double kilometers);

struct TrackOffset {
  double acrossKm = 0;  // positive to the right of the course
  double alongKm = 0;   // from the start of the leg to the point abeam; negative before the start
};

// How far `position` is from the leg from `start` to `end`, across and along it.
TrackOffset offsetFromLeg(const Position& start, const Position& end, const Position& position);

struct Area {
  double squareDegrees = 0;  // in a plain longitude-latitude plane
  double squareMeters = 0;   // on the sphere
};

// The area inside a closed track, whose last point connects to the first. Handles tracks across the
// 180th meridian. 0 for fewer than three points. R. Chamberlain and W. Duquette, "Some Algorithms
// for Polygons on a Sphere" (2007).
Area enclosedArea(std::span<const Position> points);

// "1.000 deg^2", a line break, "12364036568.245 m^2".
std::string areaText(const Area& area);

}  // namespace vgps
