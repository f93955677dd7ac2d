#include "geo/distance.h"

#include <cmath>
#include <limits>

#include "geo/units.h"

namespace vgps {
namespace {

// 0.001 rounded to 32 bits, like the coordinates it is compared with.
constexpr double kNoPositionDegrees = 0.0010000000474974513;

float radians(float degrees) { return static_cast<float>(degrees * kRadiansPerDegree); }

double square(double value) { return value * value; }

double kilometersBetween(float lon1, float lat1, float lon2, float lat2) {
  const double phi1 = radians(lat1);
  const double dPhi = radians(lat2) - phi1;
  const double dLambda = static_cast<double>(radians(lon2)) - radians(lon1);
  const double a =
      square(std::sin(dPhi / 2)) + square(std::cos(phi1)) * square(std::sin(dLambda / 2));
  // Because the first cosine is squared, `a` can exceed 1: the point on the far side of the earth.
  const double rest = a > 1 ? 0 : 1 - a;
  return 2 * std::atan2(std::sqrt(a), std::sqrt(rest)) * kEarthRadiusKm;
}

double inUnit(double kilometers, int32_t unit, int32_t displayUnit) {
  return distanceInUnit(kilometers, unit == kDisplayUnit ? displayUnit : unit);
}

}  // namespace

bool isNoPosition(double longitude, double latitude) {
  return std::fabs(longitude) <= kNoPositionDegrees && std::fabs(latitude) <= kNoPositionDegrees;
}

double surfaceDistance(float lon1, float lat1, float lon2, float lat2, int32_t unit,
                       int32_t displayUnit) {
  return inUnit(kilometersBetween(lon1, lat1, lon2, lat2), unit, displayUnit);
}

double distance3d(float x1, float y1, float z1, float x2, float y2, float z2, int32_t unit,
                  int32_t displayUnit) {
  return inUnit(slantKilometers(kilometersBetween(x1, y1, x2, y2), z1, z2), unit, displayUnit);
}

double slantKilometers(double surfaceKilometers, float z1, float z2) {
  const double height =
      static_cast<float>(std::fabs(static_cast<double>(z1) - static_cast<double>(z2)) / 1000);
  return std::sqrt(square(surfaceKilometers) + square(height));
}

double pointDistance(const Position& first, const Position& second, int32_t unit,
                     int32_t displayUnit, bool withAltitude) {
  const auto x1 = static_cast<float>(first.x);
  const auto y1 = static_cast<float>(first.y);
  const auto x2 = static_cast<float>(second.x);
  const auto y2 = static_cast<float>(second.y);
  if (!withAltitude) return surfaceDistance(x1, y1, x2, y2, unit, displayUnit);
  return distance3d(x1, y1, static_cast<float>(first.z), x2, y2, static_cast<float>(second.z), unit,
                    displayUnit);
}

int64_t secondsToGo(double kilometers, double metersPerSecond) {
  if (metersPerSecond == 0) return -1;
  const double seconds = kilometers * 1000 / metersPerSecond;
  constexpr double kLimit = 9223372036854774784.0;  // the largest double below 2^63
  if (std::isnan(seconds)) return -1;
  if (seconds >= kLimit) return std::numeric_limits<int64_t>::max();
  if (seconds <= -kLimit) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(seconds);
}

}  // namespace vgps
