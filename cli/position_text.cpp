#include "cli/position_text.h"

#include <algorithm>
#include <cmath>

#include "base/number.h"

namespace vgps {
namespace {

constexpr double kGreatestLatitude = 90;
constexpr double kGreatestLongitude = 180;

std::string_view withoutBlanks(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

std::string outOfRange(std::string_view what, std::string_view typed, double greatest) {
  const std::string limit = decimalText(static_cast<int64_t>(greatest));
  return std::string(what) + " " + std::string(typed) + " is out of range; it must be from -" +
         limit + " to " + limit;
}

}  // namespace

std::optional<double> typedNumber(std::string_view text) {
  const bool sign = text.starts_with('-') || text.starts_with('+');
  const std::string_view digits = text.substr(sign ? 1 : 0);
  const bool plain =
      std::all_of(digits.begin(), digits.end(), [](char c) { return isDigit(c) || c == '.'; });
  const bool any = std::any_of(digits.begin(), digits.end(), isDigit);
  if (!plain || !any || std::count(digits.begin(), digits.end(), '.') > 1) return std::nullopt;
  return leadingDouble(text);
}

std::optional<Position> typedPosition(std::string_view text, std::string& complaint) {
  const size_t comma = text.find(',');
  const std::string_view first = withoutBlanks(text.substr(0, comma));
  const std::string_view second =
      comma == std::string_view::npos ? "" : withoutBlanks(text.substr(comma + 1));
  const std::optional<double> latitude = typedNumber(first);
  const std::optional<double> longitude = typedNumber(second);
  if (!latitude || !longitude) {
    complaint =
        "'" + std::string(withoutBlanks(text)) +
        "' is not a position; use LAT,LON in decimal degrees, for example -33.8568,151.2153";
  } else if (std::fabs(*latitude) > kGreatestLatitude) {
    complaint = outOfRange("latitude", first, kGreatestLatitude);
  } else if (std::fabs(*longitude) > kGreatestLongitude) {
    complaint = outOfRange("longitude", second, kGreatestLongitude);
  } else {
    return Position{*longitude, *latitude, 0};
  }
  return std::nullopt;
}

}  // namespace vgps
