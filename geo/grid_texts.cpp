#include "geo/grid_texts.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "geo/ellipsoids.h"
#include "geo/utm.h"

namespace vgps {
namespace {

constexpr double kSquare = 100000;  // meters
// The alphabet without I and O. Column letters repeat every three zones; row letters repeat every
// 2000 km and are shifted by five in even zones.
constexpr std::string_view kLetters = "ABCDEFGHJKLMNPQRSTUVWXYZ";
constexpr size_t kColumnsPerZone = 8;
constexpr size_t kRows = 20;

std::string figures(double meters, int digits) {
  const auto whole = static_cast<uint32_t>(meters);
  std::string text = std::to_string(whole);
  text.insert(0, 5 - std::min<size_t>(5, text.size()), '0');
  return text.substr(0, static_cast<size_t>(digits));
}

}  // namespace

std::string mgrsText(double latitude, double longitude, int digits) {
  const UtmPosition utm = utmFromDegrees(kWgs84, latitude, longitude);
  if (utm.band == '\0' || digits < 1 || digits > 5) return {};
  const double column = std::floor(utm.easting / kSquare);
  if (column < 1 || column > kColumnsPerZone || utm.northing < 0) return {};
  const size_t set = static_cast<size_t>(utm.zone - 1);
  const auto row = static_cast<size_t>(utm.northing / kSquare) + (set % 2 == 0 ? 0 : 5);
  std::string text = utm.zoneText() + ' ';
  text += kLetters[(set % 3) * kColumnsPerZone + static_cast<size_t>(column) - 1];
  text += kLetters[row % kRows];
  text += ' ' + figures(std::fmod(utm.easting, kSquare), digits);
  text += ' ' + figures(std::fmod(utm.northing, kSquare), digits);
  return text;
}

std::string maidenheadText(double latitude, double longitude, int pairs) {
  if (!(std::fabs(latitude) <= 90) || !(std::fabs(longitude) <= 180) || pairs < 1 || pairs > 5) {
    return {};
  }
  // The pole and the 180th meridian belong to the last field.
  double x = std::min(longitude + 180, std::nextafter(360.0, 0.0)) / 20;
  double y = std::min(latitude + 90, std::nextafter(180.0, 0.0)) / 10;
  std::string text;
  for (int pair = 0; pair < pairs; ++pair) {
    const bool isDigits = pair % 2 == 1;
    const char first = isDigits ? '0' : pair == 0 ? 'A' : 'a';
    text += static_cast<char>(first + static_cast<int>(x));
    text += static_cast<char>(first + static_cast<int>(y));
    const int parts = isDigits ? 24 : 10;
    x = (x - std::floor(x)) * parts;
    y = (y - std::floor(y)) * parts;
  }
  return text;
}

}  // namespace vgps
