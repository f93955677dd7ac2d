#include "geo/coordinate_lines.h"

#include <algorithm>

#include "base/number.h"
#include "geo/dms.h"
#include "geo/units.h"
#include "geo/utm.h"

namespace vgps {
namespace {

std::string wholeMeters(double meters) {
  constexpr double kMost = 4294967295.0;  // latitudes beyond the poles can exceed it
  return std::to_string(meters > 0 ? static_cast<uint32_t>(std::min(meters, kMost)) : 0U);
}

}  // namespace

CoordinateLines coordinateLines(double longitude, double latitude, double altitude, int32_t format,
                                int32_t altitudeUnit, int32_t ellipsoid) {
  CoordinateLines lines;
  if (format == kUtmGrid) {
    const UtmPosition utm = utmFromDegrees(ellipsoid, latitude, longitude);
    lines.x = wholeMeters(utm.easting);
    lines.y = wholeMeters(utm.northing);
  } else if (format == kDecimalDegrees) {
    lines.x = fixedText(longitude, 7);
    lines.y = fixedText(latitude, 7);
  } else {
    lines.x = dmsText(longitude, AngleKind::longitude);
    lines.y = dmsText(latitude, AngleKind::latitude);
  }
  lines.x.insert(0, "X: ");
  lines.y.insert(0, "Y: ");
  lines.z = "Z: " + altitudeText(altitudeInUnit(altitude, altitudeUnit), altitudeUnit);
  return lines;
}

}  // namespace vgps
