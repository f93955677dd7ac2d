#pragma once

#include <cstdint>
#include <string>

// Units of speed, distance and height, their factors and texts.
//
// The factors are the 32-bit roundings of the textbook ones, used as 64-bit values: stored tracks
// hold values made with them, and the same input must give the same digits again.
namespace vgps {

inline constexpr double kMpsPerKnot = 0.5144444108009338;
inline constexpr double kKmhPerKnot = 1.8519999980926514;  // also kilometres per nautical mile
inline constexpr double kKmPerMile = 1.6093440055847168;   // also km/h per mph
inline constexpr double kKmhPerMps = 3.5999999046325684;
inline constexpr double kInchesPerMetre = 39.369998931884766;
inline constexpr double kFeetPerMetre = 3.2799999713897705;

enum SpeedUnit : int32_t { kKmh = 0, kKnots = 1, kMps = 2, kMph = 3 };
enum DistanceUnit : int32_t { kKilometres = 0, kMiles = 1, kNauticalMiles = 2 };
enum AltitudeUnit : int32_t { kMetres = 0, kInches = 1, kFeet = 2 };

// One speed in the four units that a fix keeps side by side.
struct Speeds {
  double knots = 0;
  double mps = 0;
  double kmh = 0;
  double mph = 0;
};

Speeds speedsFromKnots(double knots);

// The one that `unit` names; 0 for an unknown unit.
double speedInUnit(const Speeds& speeds, int32_t unit);

// Kilometres in `unit`; 0 for an unknown unit.
double distanceInUnit(double kilometres, int32_t unit);

// Metres in `unit`; 0 for an unknown unit.
double altitudeInUnit(double metres, int32_t unit);

// Values that are in their unit already: "41.48 Km/H", "5.14 m/s", "509.15 Km", "545.00m".
// Empty for an unknown unit.
std::string speedText(double value, int32_t unit);
std::string distanceText(double value, int32_t unit);

// Feet end in "f" on the coordinate line and in "ft" in the statistics list.
std::string altitudeText(double value, int32_t unit);
std::string altitudeStatisticsText(double value, int32_t unit);

// Hours and minutes of a time span in seconds as "01:05"; more than 99 hours take more digits.
std::string hoursMinutesText(uint64_t seconds);

// A share in percent: "12.50%".
std::string shareText(double percent);

}  // namespace vgps
