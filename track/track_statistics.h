#pragma once

#include <cstddef>
#include <optional>

#include "base/date_time.h"
#include "track/track.h"

// What a finished track amounts to.
namespace vgps {

// In degrees. A track across the 180th meridian has its west edge east of its east edge.
struct TrackBounds {
  double west = 0;
  double south = 0;
  double east = 0;
  double north = 0;
};

// What was between the points of known time. Points without one are passed over.
struct TrackTimes {
  DateTime first;  // local time
  DateTime last;
  double seconds = 0;  // from the first to the last
  // The part of it in which the track went on at a walker's pace at least (1 km/h between two
  // points). Receivers wander while they stand, and a recording leaves the points of a stop out:
  // so neither the points' own speeds nor their number tell a stop.
  double movingSeconds = 0;
  double movingKm = 0;
};

struct TrackStatistics {
  size_t points = 0;
  double distanceKm = 0;              // sum of the surface distances from each point to the next
  double distance3dKm = 0;            // likewise with heights
  std::optional<TrackTimes> times;    // none without two points of known time
  std::optional<TrackBounds> bounds;  // none without points
  // Metres. Heights of receivers go up and down by some metres while they stand, and summed up
  // that would climb mountains: a rise counts, from its lowest to its highest point, once the
  // height has turned back by more than 5 metres or the track ends; falls likewise.
  double climb = 0;
  double descent = 0;
  double highest = 0;  // metres
  double lowest = 0;
  double greatestKmh = 0;  // of the speeds that the receiver gave

  // km/h over the whole time and over the moving part; 0 without times.
  double averageKmh() const;
  double movingKmh() const;
};

TrackStatistics statisticsOf(const Track& track);

// Seconds from one time to the other, negative when it lies before; none for dates that are none.
std::optional<double> secondsBetween(const DateTime& from, const DateTime& to);

}  // namespace vgps
