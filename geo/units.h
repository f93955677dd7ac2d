#pragma once

#include <cstdint>
#include <string>

// Units of speed, distance, and altitude: conversion factors and texts.
//
// The factors are the usual ones rounded to 32 bits and used as 64-bit values: stored tracks
// contain values computed with them, and the same input must produce the same digits.
namespace vgps {

inline constexpr double kMpsPerKnot = 0.5144444108009338;
inline constexpr double kKmhPerKnot = 1.8519999980926514;  // also kilometers per nautical mile
inline constexpr double kKmPerMile = 1.6093440055847168;   // also km/h per mph
inline constexpr double kKmhPerMps = 3.5999999046325684;
inline constexpr double kInchesPerMeter = 39.369998931884766;
inline constexpr double kFeetPerMeter = 3.2799999713897705;

enum SpeedUnit : int32_t { kKmh = 0, kKnots = 1, kMps = 2, kMph = 3 };
enum DistanceUnit : int32_t { kKilometers = 0, kMiles = 1, kNauticalMiles = 2 };
enum AltitudeUnit : int32_t { kMeters = 0, kInches = 1, kFeet = 2 };

// A speed in the four units that a fix stores.
struct Speeds {
  double knots = 0;
  double mps = 0;
  double kmh = 0;
  double mph = 0;
};

Speeds speedsFromKnots(double knots);

// The speed in `unit`; 0 for an unknown unit.
double speedInUnit(const Speeds& speeds, int32_t unit);

// Converts kilometers to `unit`; 0 for an unknown unit.
double distanceInUnit(double kilometers, int32_t unit);

// Converts meters to `unit`; 0 for an unknown unit.
double altitudeInUnit(double meters, int32_t unit);

// Texts for values that are already in `unit`: "41.48 Km/H", "5.14 m/s", "509.15 Km", "545.00m".
// Empty for an unknown unit.
std::string speedText(double value, int32_t unit);
std::string distanceText(double value, int32_t unit);

// Feet are "f" on the coordinate line, but "ft" in the statistics list.
std::string altitudeText(double value, int32_t unit);
std::string altitudeStatisticsText(double value, int32_t unit);

// A time span in seconds as hours and minutes, "01:05"; 100 hours or more use more digits.
std::string hoursMinutesText(uint64_t seconds);

// A percentage: "12.50%".
std::string shareText(double percent);

}  // namespace vgps
