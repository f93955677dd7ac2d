#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/date_time.h"
#include "track/track.h"

// What is done to a finished track. Attachments and point names stay with their points.
namespace vgps {

// Appends the points of `other`.
void join(Track& track, const Track& other);

// Takes the points from `index` on out of `track`; they are the returned track, named
// "Split NUMBER". None, and nothing changed, when one of the two would be empty.
std::optional<Track> split(Track& track, size_t index, uint32_t number);

// The last point becomes the first. Times, marks and courses stay with their points.
void reverse(Track& track);

// Keeps the points from `first` to `last`, both included. False, and nothing changed, when there
// are no such points.
bool trim(Track& track, size_t first, size_t last);

// Keeps what lies between the first point recorded at `from` or later and the last one recorded at
// `to` or earlier, in local time. False, and nothing changed, when nothing would be left.
bool trimToTimes(Track& track, const DateTime& from, const DateTime& to);

}  // namespace vgps
