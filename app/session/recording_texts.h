#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "app/session/recorder.h"

// Descriptions of tracks and recordings, for the window and the command line.
namespace vgps {

// "88 points, 8.50 Km, 12 minutes", without the time if it is unknown. `distanceUnit` is the value
// from the settings.
std::string trackTotalsText(const Track& track, int32_t distanceUnit);

// "waiting: slower than 5 km/h": the rule that kept the fixes of the last ten seconds from being
// recorded. Empty if none did.
std::string waitingText(const Recorder& recorder);

// "2010-07-05 07:03 UTC"; milliseconds since 1970.
std::string startText(int64_t utc);

// "Track 3, 2010-07-05 07:03 UTC, 88 points, 8.50 Km", for a list of tracks.
std::string trackRowText(const TrackSummary& track, int32_t distanceUnit);

}  // namespace vgps
