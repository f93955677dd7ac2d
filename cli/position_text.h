#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "geo/distance.h"

namespace vgps {

// The number that is the whole text, such as "-33.8568"; none for anything else.
std::optional<double> typedNumber(std::string_view text);

// A position typed as LAT,LON in decimal degrees. None with the reason in `complaint`.
std::optional<Position> typedPosition(std::string_view text, std::string& complaint);

}  // namespace vgps
