#include "geo/utm.h"

#include <cmath>
#include <string_view>

#include "geo/distance.h"
#include "geo/ellipsoids.h"

namespace vgps {
namespace {

constexpr double kScale = 0.9996;
constexpr double kFalseEasting = 500000;
constexpr double kFalseNorthing = 10000000;  // meters, added south of the equator
constexpr std::string_view kBands = "CDEFGHJKLMNPQRSTUVWX";

double normalizedLongitude(double longitude) {
  double turned = longitude + 180;
  // A longitude far out of range (from a damaged file) must still map to some place on the earth.
  if (std::fabs(turned) > 1e9) turned = std::fmod(turned, 360);
  const double normalized = turned - 360 * std::trunc(turned / 360) - 180;
  return normalized < -180 ? normalized + 360 : normalized;
}

// Zones of irregular width, around Bergen and on Svalbard.
struct ZoneException {
  double south, north;  // latitude: inclusive, exclusive
  double west, east;    // longitude: inclusive, exclusive
  int32_t zone;
};
constexpr ZoneException kExceptions[] = {
    {56, 64, 3, 12, 32},  {72, 84, 0, 9, 31},   {72, 84, 9, 21, 33},
    {72, 84, 21, 33, 35}, {72, 84, 33, 42, 37},
};

int32_t zoneOf(double latitude, double longitude) {
  for (const ZoneException& e : kExceptions) {
    if (latitude >= e.south && latitude < e.north && longitude >= e.west && longitude < e.east) {
      return e.zone;
    }
  }
  return 1 + static_cast<int32_t>((longitude + 180) / 6);
}

char bandOf(double latitude) {
  if (!(latitude >= -80 && latitude <= 84)) return '\0';
  const auto index = static_cast<size_t>((latitude + 80) / 8);
  return kBands[index < kBands.size() ? index : kBands.size() - 1];  // band X spans twelve degrees
}

// The terms of the series that depend on the ellipsoid and the latitude, from one sine and one
// cosine.
struct Meridian {
  double tangent, cosine;
  double radius;   // N, radius of curvature in the prime vertical
  double t, c;     // tan^2, e'^2 cos^2
  double ePrime2;  // second eccentricity squared
  double arc;      // M, meridian arc from the equator
};

Meridian meridianAt(const Ellipsoid& ellipsoid, double phi) {
  const double a = ellipsoid.equatorialRadius;
  const double e2 = ellipsoid.eccentricitySquared;
  const double e4 = e2 * e2;
  const double e6 = e4 * e2;
  const double sine = std::sin(phi);
  const double cosine = std::cos(phi);
  // Sines and cosines of multiple angles from the same two values.
  const double sin2 = 2 * sine * cosine;
  const double cos2 = 1 - 2 * sine * sine;
  const double sin4 = 2 * sin2 * cos2;
  const double cos4 = 1 - 2 * sin2 * sin2;
  const double sin6 = sin4 * cos2 + cos4 * sin2;
  Meridian m{};
  m.cosine = cosine;
  m.tangent = sine / cosine;
  m.ePrime2 = e2 / (1 - e2);
  m.radius = a / std::sqrt(1 - e2 * sine * sine);
  m.t = m.tangent * m.tangent;
  m.c = m.ePrime2 * cosine * cosine;
  m.arc = a * ((1 - e2 / 4 - 3 * e4 / 64 - 5 * e6 / 256) * phi -
               (3 * e2 / 8 + 3 * e4 / 32 + 45 * e6 / 1024) * sin2 +
               (15 * e4 / 256 + 45 * e6 / 1024) * sin4 - (35 * e6 / 3072) * sin6);
  return m;
}

}  // namespace

std::string UtmPosition::zoneText() const {
  std::string text = std::to_string(zone);
  if (band != '\0') text += band;
  return text;
}

UtmPosition utmFromDegrees(int32_t ellipsoid, double latitude, double longitude) {
  const double lambda = normalizedLongitude(longitude);
  UtmPosition utm;
  utm.zone = zoneOf(latitude, lambda);
  utm.band = bandOf(latitude);
  const double centralMeridian = (utm.zone - 1) * 6 - 180 + 3;
  const double phi = latitude * kRadiansPerDegree;
  const Meridian m = meridianAt(ellipsoidOf(ellipsoid), phi);
  const double fromCenter = lambda * kRadiansPerDegree - centralMeridian * kRadiansPerDegree;
  const double a1 = m.cosine * fromCenter;
  const double a2 = a1 * a1;
  const double a3 = a2 * a1;
  const double a4 = a2 * a2;
  utm.easting = kScale * m.radius *
                    (a1 + (1 - m.t + m.c) * a3 / 6 +
                     (5 - 18 * m.t + m.t * m.t + 72 * m.c - 58 * m.ePrime2) * a4 * a1 / 120) +
                kFalseEasting;
  utm.northing =
      kScale *
      (m.arc + m.radius * m.tangent *
                   (a2 / 2 + (5 - m.t + 9 * m.c + 4 * m.c * m.c) * a4 / 24 +
                    (61 - 58 * m.t + m.t * m.t + 600 * m.c - 330 * m.ePrime2) * a4 * a2 / 720));
  if (latitude < 0) utm.northing += kFalseNorthing;
  return utm;
}

}  // namespace vgps
