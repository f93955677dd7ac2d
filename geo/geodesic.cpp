#include "geo/geodesic.h"

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <cmath>

namespace vgps {
namespace {

const GeographicLib::Geodesic& earth() { return GeographicLib::Geodesic::WGS84(); }

}  // namespace

double geodesicKilometres(const Position& from, const Position& to) {
  double metres = 0;
  earth().Inverse(from.y, from.x, to.y, to.x, metres);
  return metres / 1000;
}

double geodesicBearing(const Position& from, const Position& to) {
  double metres = 0;
  double there = 0;
  double arriving = 0;
  earth().Inverse(from.y, from.x, to.y, to.x, metres, there, arriving);
  if (metres == 0) return 0;
  return there < 0 ? there + 360 : there + 0.0;  // -0 is 0
}

Position geodesicDestination(const Position& from, double bearingDegrees, double kilometres) {
  Position reached = from;
  earth().Direct(from.y, from.x, bearingDegrees, kilometres * 1000, reached.y, reached.x);
  return reached;
}

Area geodesicArea(std::span<const Position> points) {
  Area area = enclosedArea(points);
  if (points.size() < 3) return area;
  GeographicLib::PolygonArea polygon(earth());
  for (const Position& point : points) polygon.AddPoint(point.y, point.x);
  double perimeter = 0;
  double squareMetres = 0;
  polygon.Compute(false, true, perimeter, squareMetres);
  area.squareMetres = std::fabs(squareMetres);
  return area;
}

}  // namespace vgps
