#pragma once

#include <span>
#include <string>

#include "geo/distance.h"

// Courses and areas on the same sphere, in full double precision: nothing stored depends on them.
// Formulas: E. Williams, "Aviation Formulary".
namespace vgps {

// The course to steer at `from` towards `to`, degrees true, 0 <= course < 360; 0 when they are one.
double initialBearing(const Position& from, const Position& to);

// Where one arrives after `kilometres` on that course. Altitude is kept.
Position destination(const Position& from, double bearingDegrees, double kilometres);

struct TrackOffset {
  double acrossKm = 0;  // positive right of the course
  double alongKm = 0;   // from the start of the leg to the point abeam; negative behind it
};

// Where `position` lies beside the leg from `start` to `end`.
TrackOffset offsetFromLeg(const Position& start, const Position& end, const Position& position);

struct Area {
  double squareDegrees = 0;  // of the plain longitude-latitude drawing
  double squareMetres = 0;   // on the sphere
};

// The area inside a closed track; the last point is joined to the first. A track that crosses the
// 180th meridian is taken across it. 0 for fewer than three points. R. Chamberlain and W. Duquette,
// "Some Algorithms for Polygons on a Sphere" (2007).
Area enclosedArea(std::span<const Position> points);

// "1.000 deg^2", the end of a line, "12364036568.245 m^2".
std::string areaText(const Area& area);

}  // namespace vgps
