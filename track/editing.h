#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/date_time.h"
#include "track/track.h"

// Operations on a finished track. Attachments and point names stay with their points.
namespace vgps {

// Appends the points of `other`.
void join(Track& track, const Track& other);

// Moves the points from `index` on into a new track named "Split NUMBER" and returns it. Returns
// nothing, and changes nothing, if either part would be empty.
std::optional<Track> split(Track& track, size_t index, uint32_t number);

// Reverses the order of the points. Times, marks, and courses stay with their points.
void reverse(Track& track);

// Keeps the points from `first` to `last`, inclusive. Returns false, with nothing changed, if there
// are no such points.
bool trim(Track& track, size_t first, size_t last);

// Keeps the points from the first one recorded at or after `from` to the last one recorded at or
// before `to`, in local time. Returns false, with nothing changed, if no points would remain.
bool trimToTimes(Track& track, const DateTime& from, const DateTime& to);

}  // namespace vgps
