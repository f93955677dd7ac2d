#include "geo/units.h"

#include <array>

#include "base/number.h"

namespace vgps {
namespace {

constexpr std::array<const char*, 4> kSpeedSuffixes = {" Km/H", " Knots", " m/s", " MpH"};
constexpr std::array<const char*, 3> kDistanceSuffixes = {" Km", " Mi", " Nmi"};
constexpr std::array<const char*, 3> kAltitudeSuffixes = {"m", "i", "f"};
constexpr std::array<const char*, 3> kStatisticsSuffixes = {"m", "i", "ft"};

template <size_t N>
std::string withSuffix(double value, int32_t unit, const std::array<const char*, N>& suffixes) {
  if (unit < 0 || unit >= static_cast<int32_t>(N)) return {};
  return fixedText(value, 2) + suffixes[static_cast<size_t>(unit)];
}

}  // namespace

Speeds speedsFromKnots(double knots) {
  const double kmh = knots * kKmhPerKnot;
  return {knots, knots * kMpsPerKnot, kmh, kmh / kKmPerMile};
}

double speedInUnit(const Speeds& speeds, int32_t unit) {
  const std::array<double, 4> values = {speeds.kmh, speeds.knots, speeds.mps, speeds.mph};
  return unit < 0 || unit > kMph ? 0 : values[static_cast<size_t>(unit)];
}

double distanceInUnit(double kilometers, int32_t unit) {
  if (unit == kKilometers) return kilometers;
  if (unit == kMiles) return kilometers / kKmPerMile;
  if (unit == kNauticalMiles) return kilometers / kKmhPerKnot;
  return 0;
}

double altitudeInUnit(double meters, int32_t unit) {
  if (unit == kMeters) return meters;
  if (unit == kInches) return meters * kInchesPerMeter;
  if (unit == kFeet) return meters * kFeetPerMeter;
  return 0;
}

std::string speedText(double value, int32_t unit) {
  return withSuffix(value, unit, kSpeedSuffixes);
}

std::string distanceText(double value, int32_t unit) {
  return withSuffix(value, unit, kDistanceSuffixes);
}

std::string altitudeText(double value, int32_t unit) {
  return withSuffix(value, unit, kAltitudeSuffixes);
}

std::string altitudeStatisticsText(double value, int32_t unit) {
  return withSuffix(value, unit, kStatisticsSuffixes);
}

std::string hoursMinutesText(uint64_t seconds) {
  const uint64_t minutes = seconds / 60;
  std::string text;
  for (const uint64_t part : {minutes / 60, minutes % 60}) {
    if (!text.empty()) text += ':';
    if (part < 10) text += '0';
    text += std::to_string(part);
  }
  return text;
}

std::string shareText(double percent) { return fixedText(percent, 2) + '%'; }

}  // namespace vgps
