#pragma once

#include <cstddef>
#include <cstdint>
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

// The distance between two points that are `surfaceKm` apart on the surface, with their altitudes
// where both are known; kilometres.
double slantDistance(double surfaceKm, const FixRecord& from, const FixRecord& to);

// How the way between two points is measured: as tracks are recorded, or on the ellipsoid.
enum class Measure { asRecorded, geodesic };

// Adds up way, bounds and times while points come one after another.
class TrackSums {
 public:
  explicit TrackSums(Measure measure = Measure::asRecorded) : measure_(measure) {}

  // The surface distance from the point before, in kilometres; 0 for the first one. Looks at the
  // position and the local time.
  double add(const TrackPoint& point);

  size_t points() const { return points_; }
  double kilometres() const { return kilometres_; }
  std::optional<TrackBounds> bounds() const;  // none without points
  std::optional<TrackTimes> times() const;    // none without two points of known time
  // Of the first point that has a time; year 0 when none has.
  const DateTime& firstTime() const { return times_.first; }

 private:
  void addBounds(const TrackPoint& point);
  void addTime(const DateTime& time);

  Measure measure_;
  size_t points_ = 0;
  double kilometres_ = 0;
  double longitude_ = 0, latitude_ = 0;  // of the last point
  double turns_ = 0;  // degrees: longitudes are unrolled across the 180th meridian
  double west_ = 0, south_ = 0, east_ = 0, north_ = 0;
  TrackTimes times_;
  size_t timed_ = 0;     // points of known time
  int64_t firstMs_ = 0;  // theirs
  int64_t lastMs_ = 0;
  double timedKm_ = 0;  // the way to the last of them
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
  size_t knownAltitudes = 0;  // points whose altitude is known: only those count for all of these
  double greatestKmh = 0;     // of the speeds that the receiver gave

  // km/h over the whole time and over the moving part; 0 without times.
  double averageKmh() const;
  double movingKmh() const;
};

TrackStatistics statisticsOf(const Track& track, Measure measure = Measure::asRecorded);

}  // namespace vgps
