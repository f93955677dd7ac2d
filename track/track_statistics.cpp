#include "track/track_statistics.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "geo/distance.h"
#include "geo/units.h"

namespace vgps {
namespace {

constexpr double kSlowestMovingKmh = 1;
constexpr double kHeightNoise = 5;  // metres

// Milliseconds of the calendar, without time zones or leap seconds.
std::optional<int64_t> millisecondsOf(const DateTime& time) {
  namespace ch = std::chrono;
  const ch::year_month_day date(ch::year(time.year), ch::month(time.month), ch::day(time.day));
  if (time.year == 0 || !date.ok()) return std::nullopt;
  const int64_t days = ch::sys_days(date).time_since_epoch().count();
  const int64_t minutes = (days * 24 + time.hour) * 60 + time.minute;
  return (minutes * 60 + time.second) * 1000 + time.millisecond;
}

// The sums of rises and falls between the turns of the height; see TrackStatistics::climb.
class Heights {
 public:
  void add(double height) {
    if (std::exchange(empty_, false)) low_ = high_ = height;
    switch (direction_) {
      case Direction::unknown:
        low_ = std::min(low_, height);
        high_ = std::max(high_, height);
        if (high_ - low_ > kHeightNoise) {
          direction_ = height == high_ ? Direction::up : Direction::down;
        }
        break;
      case Direction::up:
        high_ = std::max(high_, height);
        if (high_ - height > kHeightNoise) {
          climb += high_ - low_;
          low_ = height;
          direction_ = Direction::down;
        }
        break;
      case Direction::down:
        low_ = std::min(low_, height);
        if (height - low_ > kHeightNoise) {
          descent += high_ - low_;
          high_ = height;
          direction_ = Direction::up;
        }
        break;
    }
  }
  void end() {
    if (direction_ == Direction::up) climb += high_ - low_;
    if (direction_ == Direction::down) descent += high_ - low_;
  }

  double climb = 0;
  double descent = 0;

 private:
  enum class Direction { unknown, up, down };
  Direction direction_ = Direction::unknown;
  bool empty_ = true;
  double low_ = 0;   // since the last turn
  double high_ = 0;  // likewise
};

// Longitudes unrolled across the 180th meridian.
class Bounds {
 public:
  void add(double longitude, double latitude) {
    if (std::exchange(empty_, false)) {
      x_ = west_ = east_ = longitude;
      south_ = north_ = latitude;
    }
    x_ += std::remainder(longitude - x_, 360);
    west_ = std::min(west_, x_);
    east_ = std::max(east_, x_);
    south_ = std::min(south_, latitude);
    north_ = std::max(north_, latitude);
  }
  std::optional<TrackBounds> bounds() const {
    if (empty_) return std::nullopt;
    if (east_ - west_ >= 360) return TrackBounds{-180, south_, 180, north_};
    return TrackBounds{onEarth(west_), south_, onEarth(east_), north_};
  }

 private:
  static double onEarth(double longitude) {
    return std::fabs(longitude) <= 180 ? longitude : std::remainder(longitude, 360);
  }
  bool empty_ = true;
  double x_ = 0, west_ = 0, east_ = 0, south_ = 0, north_ = 0;
};

// Adds up the time between points, and the way that belongs to it.
class Times {
 public:
  void add(const DateTime& time, double wayKm) {
    const std::optional<int64_t> now = millisecondsOf(time);
    if (!now) return;
    if (!last_) {
      first_ = *now;
      times_.first = time;
      wayKm_ = wayKm;
    }
    const double seconds = static_cast<double>(*now - last_.value_or(*now)) / 1000;
    const double km = wayKm - wayKm_;
    // Two points of the same second are no stop, and a clock that was put back is no time.
    if (seconds >= 0 && km * 3600 >= kSlowestMovingKmh * seconds) {
      times_.movingSeconds += seconds;
      times_.movingKm += km;
    }
    wayKm_ = wayKm;
    last_ = now;
    times_.last = time;
    ++count_;
  }
  std::optional<TrackTimes> times() const {
    if (count_ < 2) return std::nullopt;
    TrackTimes result = times_;
    result.seconds = std::max(0.0, static_cast<double>(*last_ - first_) / 1000);
    result.movingSeconds = std::min(result.movingSeconds, result.seconds);
    return result;
  }

 private:
  TrackTimes times_;
  size_t count_ = 0;
  int64_t first_ = 0;
  std::optional<int64_t> last_;
  double wayKm_ = 0;  // of the last point of known time, from the start
};

double kmhOf(double kilometres, double seconds) {
  return seconds > 0 ? kilometres * 3600 / seconds : 0;
}

Position positionOf(const TrackPoint& point) {
  return {point.longitude, point.latitude, point.altitude};
}

}  // namespace

std::optional<double> secondsBetween(const DateTime& from, const DateTime& to) {
  const std::optional<int64_t> start = millisecondsOf(from);
  const std::optional<int64_t> end = millisecondsOf(to);
  if (!start || !end) return std::nullopt;
  return static_cast<double>(*end - *start) / 1000;
}

double TrackStatistics::averageKmh() const { return times ? kmhOf(distanceKm, times->seconds) : 0; }

double TrackStatistics::movingKmh() const {
  return times ? kmhOf(times->movingKm, times->movingSeconds) : 0;
}

TrackStatistics statisticsOf(const Track& track) {
  TrackStatistics all;
  all.points = track.points.size();
  if (all.points == 0) return all;
  Heights heights;
  Bounds bounds;
  Times times;
  all.highest = all.lowest = track.points.front().altitude;
  const TrackPoint* last = nullptr;
  for (const TrackPoint& point : track.points) {
    if (last != nullptr) {
      const double surface =
          pointDistance(positionOf(*last), positionOf(point), kKilometres, kKilometres, false);
      all.distanceKm += surface;
      all.distance3dKm += slantKilometres(surface, static_cast<float>(last->altitude),
                                          static_cast<float>(point.altitude));
    }
    heights.add(point.altitude);
    bounds.add(point.longitude, point.latitude);
    times.add(point.localTime, all.distanceKm);
    all.highest = std::max(all.highest, point.altitude);
    all.lowest = std::min(all.lowest, point.altitude);
    all.greatestKmh = std::max(all.greatestKmh, point.speedKmh);
    last = &point;
  }
  heights.end();
  all.climb = heights.climb;
  all.descent = heights.descent;
  all.bounds = bounds.bounds();
  all.times = times.times();
  return all;
}

}  // namespace vgps
