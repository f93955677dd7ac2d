#pragma once

#include <cstdint>
#include <string>

namespace vgps {

// Military grid reference on WGS-84: "32U PU 87299 32401" with `digits` (1 to 5) figures for each
// of easting and northing, cut, not rounded. Empty outside 80 S to 84 N, where the grid ends.
// NGA.STND.0037, "Universal Grids and Grid Reference Systems" (2014).
std::string mgrsText(double latitude, double longitude, int digits);

// Locator of radio amateurs: "JN58td" for `pairs` = 3; 1 to 5 pairs. Empty for a position that is
// none. IARU Region 1, "Technical Recommendation R.1 locator".
std::string maidenheadText(double latitude, double longitude, int pairs);

}  // namespace vgps
