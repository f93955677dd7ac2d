#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "app/session/recorder.h"

// A track and its recording in words, for the window and for the terminal.
namespace vgps {

// "88 points, 8.50 Km, 12 minutes", without the time where it is not known. `distanceUnit`: as in
// the settings.
std::string trackTotalsText(const Track& track, int32_t distanceUnit);

// "waiting: slower than 5 km/h": the rule that keeps the fixes of the last ten seconds from being
// recorded. Empty when none does.
std::string waitingText(const Recorder& recorder);

// "2010-07-05 07:03 UTC"; milliseconds since 1970.
std::string startText(int64_t utc);

// "Track 3, 2010-07-05 07:03 UTC, 88 points, 8.50 Km", as a list of tracks has it.
std::string trackRowText(const TrackSummary& track, int32_t distanceUnit);

}  // namespace vgps
