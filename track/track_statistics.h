#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/date_time.h"
#include "track/track.h"

// Distances, times, bounds, speeds, and climb of a finished track.
namespace vgps {

// In degrees. If a track crosses the 180th meridian, `west` is greater than `east`.
struct TrackBounds {
  double west = 0;
  double south = 0;
  double east = 0;
  double north = 0;
};

// Totals over the points that have a time; other points are skipped.
struct TrackTimes {
  DateTime first;  // local time
  DateTime last;
  double seconds = 0;  // from the first to the last
  // The part during which the track advanced at walking pace or faster (1 km/h between two points).
  // Receivers drift while at rest, and a recording omits the points of a stop, so neither the
  // points' own speeds nor their number reveal a stop.
  double movingSeconds = 0;
  double movingKm = 0;
};

// The distance between two points that are `surfaceKm` apart on the surface, with their altitudes
// where both are known; kilometers.
double slantDistance(double surfaceKm, const FixRecord& from, const FixRecord& to);

// How the way between two points is measured: as tracks are recorded, or on the ellipsoid.
enum class Measure { asRecorded, geodesic };

// Adds up way, bounds and times while points come one after another.
class TrackSums {
 public:
  explicit TrackSums(Measure measure = Measure::asRecorded) : measure_(measure) {}

  // The surface distance from the point before, in kilometers; 0 for the first one. Looks at the
  // position and the local time.
  double add(const TrackPoint& point);

  size_t points() const { return points_; }
  double kilometers() const { return kilometers_; }
  std::optional<TrackBounds> bounds() const;  // empty without points
  std::optional<TrackTimes> times() const;    // empty without two points with a time
  // Of the first point with a time; year 0 if there is none.
  const DateTime& firstTime() const { return times_.first; }

 private:
  void addBounds(const TrackPoint& point);
  void addTime(const DateTime& time);

  Measure measure_;
  size_t points_ = 0;
  double kilometers_ = 0;
  double longitude_ = 0, latitude_ = 0;  // of the last point
  double turns_ = 0;  // degrees; keeps longitudes continuous across the 180th meridian
  double west_ = 0, south_ = 0, east_ = 0, north_ = 0;
  TrackTimes times_;
  size_t timed_ = 0;     // number of points with a time
  int64_t firstMs_ = 0;  // time of the first of them
  int64_t lastMs_ = 0;
  double timedKm_ = 0;  // distance up to the last of them
};

struct TrackStatistics {
  size_t points = 0;
  double distanceKm = 0;              // sum of the surface distances between the points
  double distance3dKm = 0;            // likewise, including altitude
  std::optional<TrackTimes> times;    // empty without two points with a time
  std::optional<TrackBounds> bounds;  // empty without points
  // Meters. A receiver at rest reports altitudes that vary by some meters, and their sum would
  // climb mountains. So a rise, from its lowest to its highest point, counts only once the altitude
  // has dropped again by more than 5 meters or the track ends; likewise for descents.
  double climb = 0;
  double descent = 0;
  double highest = 0;  // meters
  double lowest = 0;
  size_t knownAltitudes = 0;  // points whose altitude is known: only those count for all of these
  double maxKmh = 0;          // of the speeds that the receiver gave

  // km/h over the total time and over the moving time; 0 without times.
  double averageKmh() const;
  double movingKmh() const;
};

TrackStatistics statisticsOf(const Track& track, Measure measure = Measure::asRecorded);

}  // namespace vgps
