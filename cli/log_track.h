#pragma once

#include <string>

#include "track/track.h"

namespace vgps {

// The fixes of a receiver's log as a track: through the recording filter, or every one of them.
// What went wrong, in a line; empty when nothing did.
std::string trackFromLog(const std::string& log, bool allPoints, Track& track);

}  // namespace vgps
