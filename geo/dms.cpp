#include "geo/dms.h"

#include <cmath>

namespace vgps {
namespace {

char hemisphereOf(bool negative, AngleKind kind) {
  switch (kind) {
    case AngleKind::longitude: return negative ? 'W' : 'E';
    case AngleKind::latitude: return negative ? 'S' : 'N';
    case AngleKind::none: break;
  }
  return ' ';
}

}  // namespace

DegreesMinutesSeconds dmsFromDegrees(double degrees, AngleKind kind) {
  DegreesMinutesSeconds dms;
  const bool negative = degrees < 0;
  dms.hemisphere = hemisphereOf(negative, kind);
  dms.sign = negative ? -1 : 1;
  const double value = std::fabs(degrees);
  if (!(value < 4294967296.0)) return dms;  // not an angle
  dms.degrees = static_cast<uint32_t>(value);
  const auto fraction = static_cast<float>(value - dms.degrees);
  const float minutes = fraction * 60;
  dms.minutes = static_cast<uint32_t>(minutes);
  const float seconds = (minutes - static_cast<float>(dms.minutes)) * 60;
  dms.seconds = static_cast<uint32_t>(seconds);
  dms.milliseconds = static_cast<uint32_t>((seconds - static_cast<float>(dms.seconds)) * 1000);
  return dms;
}

std::string dmsText(double degrees, AngleKind kind) {
  const DegreesMinutesSeconds dms = dmsFromDegrees(degrees, kind);
  std::string thousandths = std::to_string(dms.milliseconds);
  thousandths.insert(0, thousandths.size() < 3 ? 3 - thousandths.size() : 0, '0');
  return std::to_string(dms.degrees) + ' ' + std::to_string(dms.minutes) + "' " +
         std::to_string(dms.seconds) + '.' + thousandths + "''" + dms.hemisphere;
}

}  // namespace vgps
