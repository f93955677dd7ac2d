#pragma once

#include <cstdint>
#include <string>

namespace vgps {

// Military grid reference on WGS-84: "32U PU 87299 32401", with `digits` (1 to 5) digits each for
// easting and northing, truncated. Empty outside 80 S to 84 N, the limits of the grid.
// NGA.STND.0037, "Universal Grids and Grid Reference Systems" (2014).
std::string mgrsText(double latitude, double longitude, int digits);

// Amateur radio locator: "JN58td" for `pairs` = 3. `pairs` is 1 to 5. Empty for an invalid
// position. IARU Region 1, "Technical Recommendation R.1 locator".
std::string maidenheadText(double latitude, double longitude, int pairs);

}  // namespace vgps
