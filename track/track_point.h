#pragma once

#include <cstdint>
#include <deque>
#include <type_traits>

#include "gps/fix.h"

namespace vgps {

// One recorded fix: its values, with the computer's clock in `utcTime` and `localTime` and the
// receiver's time in `receiverUtc`. A plain record without pointers.
struct TrackPoint : FixRecord {
  uint32_t m = 0;           // mark number; 0: none
  uint32_t s = 0;           // segment or status number; 0: none
  uint32_t c = 0;           // identifier of the mobile network cell
  uint32_t name = 0;        // number in the track's list of point names, from 1; 0: none
  int64_t receiverUtc = 0;  // milliseconds since 1970; 0: unknown
};
static_assert(sizeof(TrackPoint) <= 184 && std::is_trivially_copyable_v<TrackPoint>);

// The points of a track in order. The list grows by blocks and never moves a point: recording for
// hours at 10 Hz never pauses for a copy or needs twice the memory.
using PointList = std::deque<TrackPoint>;

}  // namespace vgps
