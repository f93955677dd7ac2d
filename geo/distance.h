#pragma once

#include <cstdint>

// Distances on a sphere of radius 6371.0 km, with the program's own precision: inputs are degrees
// as 32-bit floats, radians are 32-bit floats too. Stored tracks and arrival tests depend on it.
namespace vgps {

// pi/180 rounded to 32 bits.
inline constexpr double kRadiansPerDegree = 0.01745329238474369;
inline constexpr double kEarthRadiusKm = 6371.0;

struct Position {
  double x = 0;  // longitude, degrees, east positive
  double y = 0;  // latitude, degrees, north positive
  double z = 0;  // metres above mean sea level
};

// Unit -1 stands for the one that the display uses; `distanceInUnit` knows the others.
inline constexpr int32_t kDisplayUnit = -1;

// Within a thousandth of a degree of 0,0 there is no position: it is never recorded, drawn or
// written.
bool isNoPosition(double longitude, double latitude);

// Surface distance by the haversine formula, but with the square of the first latitude's cosine
// where the textbook (Sinnott, "Virtues of the Haversine") has the product of both: so the
// distance depends a little on which point comes first. Degrees; the result in `unit`, 0 for an
// unknown unit. `displayUnit` is taken where `unit` is kDisplayUnit.
double surfaceDistance(float lon1, float lat1, float lon2, float lat2, int32_t unit,
                       int32_t displayUnit);

// With the difference of altitude (metres) as the other side of a right angle.
double distance3d(float x1, float y1, float z1, float x2, float y2, float z2, int32_t unit,
                  int32_t displayUnit);

// A surface distance and the height between its ends (metres), both in kilometres: what distance3d
// makes of them, for those who have the surface distance already.
double slantKilometres(double surfaceKilometres, float z1, float z2);

double pointDistance(const Position& first, const Position& second, int32_t unit,
                     int32_t displayUnit, bool withAltitude);

// Whole seconds for `kilometres` at `metresPerSecond`, toward zero; -1 when standing. A time that
// 64 bits cannot hold gives the nearest that they can.
int64_t secondsToGo(double kilometres, double metresPerSecond);

}  // namespace vgps
