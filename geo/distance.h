#pragma once

#include <cstdint>

// Distances on a sphere of radius 6371.0 km, in reduced precision: inputs are degrees as 32-bit
// floats, and so are radians. Stored tracks and arrival tests depend on these exact values.
namespace vgps {

// pi/180 rounded to 32 bits.
inline constexpr double kRadiansPerDegree = 0.01745329238474369;
inline constexpr double kEarthRadiusKm = 6371.0;

struct Position {
  double x = 0;  // longitude, degrees, east positive
  double y = 0;  // latitude, degrees, north positive
  double z = 0;  // meters above mean sea level
};

// Stands for the display's unit; `distanceInUnit` lists the other units.
inline constexpr int32_t kDisplayUnit = -1;

// A position within a thousandth of a degree of 0,0 means "no position" and is never recorded,
// drawn, or written.
bool isNoPosition(double longitude, double latitude);

// Surface distance by the haversine formula, except that it uses the square of the first latitude's
// cosine instead of the product of both cosines (Sinnott, "Virtues of the Haversine"). The distance
// therefore depends slightly on the order of the points. Takes degrees. Returns the distance in
// `unit`, or in `displayUnit` if `unit` is kDisplayUnit; 0 for an unknown unit.
double surfaceDistance(float lon1, float lat1, float lon2, float lat2, int32_t unit,
                       int32_t displayUnit);

// Surface distance and difference of altitude (meters) combined as the sides of a right triangle.
double distance3d(float x1, float y1, float z1, float x2, float y2, float z2, int32_t unit,
                  int32_t displayUnit);

// The same as distance3d, for callers that already have the surface distance. Takes kilometers and
// altitudes in meters; returns kilometers.
double slantKilometers(double surfaceKilometers, float z1, float z2);

double pointDistance(const Position& first, const Position& second, int32_t unit,
                     int32_t displayUnit, bool withAltitude);

// Whole seconds to cover `kilometers` at `metersPerSecond`, truncated; -1 if not moving. A time
// that does not fit 64 bits is clamped.
int64_t secondsToGo(double kilometers, double metersPerSecond);

}  // namespace vgps
