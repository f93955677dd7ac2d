#pragma once

#include <string>
#include <vector>

#include "track/track.h"

namespace vgps {

// Converts a track to lines for the simulation: a valid fix at the first point, then one $GPRMCX
// sentence per point, which carries position, altitude, course, and speed.
std::vector<std::string> simulationLines(const Track& track);

}  // namespace vgps
