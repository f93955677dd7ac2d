#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "geo/distance.h"

namespace vgps {

// Parses the whole text as a number, such as "-33.8568"; empty for anything else.
std::optional<double> typedNumber(std::string_view text);

// Parses a position typed as LAT,LON in decimal degrees. If invalid, returns nothing and sets
// `complaint` to the reason.
std::optional<Position> typedPosition(std::string_view text, std::string& complaint);

}  // namespace vgps
