#include "geo/great_circle.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/number.h"

namespace vgps {
namespace {

constexpr double kRadian = std::numbers::pi / 180;

double between0And360(double degrees) {
  const double turned = std::fmod(degrees, 360);
  const double positive = turned < 0 ? turned + 360 : turned;
  return positive >= 360 ? 0 : positive;
}

// The change of longitude by the shorter way around, -180 to 180 degrees.
double longitudeStep(double from, double to) { return between0And360(to - from + 180) - 180; }

// Great-circle angle between two positions, radians. The haversine form stays accurate for small
// angles.
double angleBetween(const Position& a, const Position& b) {
  const double sinY = std::sin((b.y - a.y) * kRadian / 2);
  const double sinX = std::sin((b.x - a.x) * kRadian / 2);
  const double h = sinY * sinY + std::cos(a.y * kRadian) * std::cos(b.y * kRadian) * sinX * sinX;
  return 2 * std::asin(std::min(1.0, std::sqrt(h)));
}

}  // namespace

double initialBearing(const Position& from, const Position& to) {
  const double dLambda = (to.x - from.x) * kRadian;
  const double y = std::sin(dLambda) * std::cos(to.y * kRadian);
  const double x = std::cos(from.y * kRadian) * std::sin(to.y * kRadian) -
                   std::sin(from.y * kRadian) * std::cos(to.y * kRadian) * std::cos(dLambda);
  return between0And360(std::atan2(y, x) / kRadian);
}

Position destination(const Position& from, double bearingDegrees, double kilometers) {
  const double delta = kilometers / kEarthRadiusKm;
  const double theta = bearingDegrees * kRadian;
  const double phi = from.y * kRadian;
  const double sinPhi =
      std::sin(phi) * std::cos(delta) + std::cos(phi) * std::sin(delta) * std::cos(theta);
  const double step = std::atan2(std::sin(theta) * std::sin(delta) * std::cos(phi),
                                 std::cos(delta) - std::sin(phi) * sinPhi);
  Position reached = from;
  reached.y = std::asin(std::clamp(sinPhi, -1.0, 1.0)) / kRadian;
  reached.x = between0And360(from.x + step / kRadian + 180) - 180;
  return reached;
}

TrackOffset offsetFromLeg(const Position& start, const Position& end, const Position& position) {
  const double distance = angleBetween(start, position);
  const double turn = (initialBearing(start, position) - initialBearing(start, end)) * kRadian;
  const double across = std::asin(std::sin(distance) * std::sin(turn));
  // The arc cosine would lose short distances to rounding.
  const double along = std::atan2(std::sin(distance) * std::cos(turn), std::cos(distance));
  return {across * kEarthRadiusKm, along * kEarthRadiusKm};
}

Area enclosedArea(std::span<const Position> points) {
  Area area;
  if (points.size() < 3) return area;
  double flat = 0;
  double spherical = 0;
  double x = 0;  // continuous across the 180th meridian, from the first point
  for (size_t i = 0; i < points.size(); ++i) {
    const Position& a = points[i];
    const Position& b = points[(i + 1) % points.size()];
    const double step = longitudeStep(a.x, b.x);
    flat += x * b.y - (x + step) * a.y;
    spherical += step * kRadian * (2 + std::sin(a.y * kRadian) + std::sin(b.y * kRadian));
    x += step;
  }
  constexpr double kRadiusMeters = kEarthRadiusKm * 1000;
  area.squareDegrees = std::fabs(flat) / 2;
  area.squareMeters = std::fabs(spherical) * kRadiusMeters * kRadiusMeters / 2;
  return area;
}

std::string areaText(const Area& area) {
  constexpr int kDecimals = 3;
  return fixedText(area.squareDegrees, kDecimals) + " deg^2\r\n" +
         fixedText(area.squareMeters, kDecimals) + " m^2";
}

}  // namespace vgps
