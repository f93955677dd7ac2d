#include "geo/geodesic.h"

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <cmath>

namespace vgps {
namespace {

const GeographicLib::Geodesic& earth() { return GeographicLib::Geodesic::WGS84(); }

}  // namespace

double geodesicKilometers(const Position& from, const Position& to) {
  double meters = 0;
  earth().Inverse(from.y, from.x, to.y, to.x, meters);
  return meters / 1000;
}

double geodesicBearing(const Position& from, const Position& to) {
  double meters = 0;
  double there = 0;
  double arriving = 0;
  earth().Inverse(from.y, from.x, to.y, to.x, meters, there, arriving);
  if (meters == 0) return 0;
  return there < 0 ? there + 360 : there + 0.0;  // -0 is 0
}

Position geodesicDestination(const Position& from, double bearingDegrees, double kilometers) {
  Position reached = from;
  earth().Direct(from.y, from.x, bearingDegrees, kilometers * 1000, reached.y, reached.x);
  return reached;
}

Area geodesicArea(std::span<const Position> points) {
  Area area = enclosedArea(points);
  if (points.size() < 3) return area;
  GeographicLib::PolygonArea polygon(earth());
  for (const Position& point : points) polygon.AddPoint(point.y, point.x);
  double perimeter = 0;
  double squareMeters = 0;
  polygon.Compute(false, true, perimeter, squareMeters);
  area.squareMeters = std::fabs(squareMeters);
  return area;
}

}  // namespace vgps
