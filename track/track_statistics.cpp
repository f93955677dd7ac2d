#include "track/track_statistics.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "geo/distance.h"
#include "geo/geodesic.h"
#include "geo/units.h"

namespace vgps {
namespace {

constexpr double kSlowestMovingKmh = 1;
constexpr double kHeightNoise = 5;  // meters

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

double kmhOf(double kilometers, double seconds) {
  return seconds > 0 ? kilometers * 3600 / seconds : 0;
}

double onEarth(double longitude) {
  return std::fabs(longitude) <= 180 ? longitude : std::remainder(longitude, 360);
}

}  // namespace

double TrackSums::add(const TrackPoint& point) {
  double step = 0;
  if (points_++ > 0) {
    step =
        measure_ == Measure::geodesic
            ? geodesicKilometers({longitude_, latitude_, 0}, {point.longitude, point.latitude, 0})
            : surfaceDistance(static_cast<float>(longitude_), static_cast<float>(latitude_),
                              static_cast<float>(point.longitude),
                              static_cast<float>(point.latitude), kKilometers, kKilometers);
    kilometers_ += step;
  }
  addBounds(point);
  addTime(point.localTime);
  longitude_ = point.longitude;
  latitude_ = point.latitude;
  return step;
}

void TrackSums::addBounds(const TrackPoint& point) {
  if (points_ == 1) {
    west_ = east_ = point.longitude;
    south_ = north_ = point.latitude;
    return;
  }
  const double step = point.longitude - longitude_;
  if (step > 180) turns_ -= 360;
  if (step < -180) turns_ += 360;
  west_ = std::min(west_, point.longitude + turns_);
  east_ = std::max(east_, point.longitude + turns_);
  south_ = std::min(south_, point.latitude);
  north_ = std::max(north_, point.latitude);
}

void TrackSums::addTime(const DateTime& time) {
  const std::optional<int64_t> now = millisecondsOf(time);
  if (!now) return;
  if (timed_++ == 0) {
    times_.first = time;
    firstMs_ = lastMs_ = *now;
    timedKm_ = kilometers_;
  }
  const double seconds = static_cast<double>(*now - lastMs_) / 1000;
  const double km = kilometers_ - timedKm_;
  // Two points in the same second are not a stop, and a clock that was set back gives no valid
  // time.
  if (seconds >= 0 && km * 3600 >= kSlowestMovingKmh * seconds) {
    times_.movingSeconds += seconds;
    times_.movingKm += km;
  }
  timedKm_ = kilometers_;
  lastMs_ = *now;
  times_.last = time;
}

std::optional<TrackBounds> TrackSums::bounds() const {
  if (points_ == 0) return std::nullopt;
  if (east_ - west_ >= 360) return TrackBounds{-180, south_, 180, north_};
  return TrackBounds{onEarth(west_), south_, onEarth(east_), north_};
}

std::optional<TrackTimes> TrackSums::times() const {
  if (timed_ < 2) return std::nullopt;
  TrackTimes result = times_;
  result.seconds = std::max(0.0, static_cast<double>(lastMs_ - firstMs_) / 1000);
  result.movingSeconds = std::min(result.movingSeconds, result.seconds);
  return result;
}

double TrackStatistics::averageKmh() const { return times ? kmhOf(distanceKm, times->seconds) : 0; }

double TrackStatistics::movingKmh() const {
  return times ? kmhOf(times->movingKm, times->movingSeconds) : 0;
}

double slantDistance(double surfaceKm, const FixRecord& from, const FixRecord& to) {
  if (!from.altitudeKnown() || !to.altitudeKnown()) return surfaceKm;
  return slantKilometers(surfaceKm, static_cast<float>(from.altitude),
                         static_cast<float>(to.altitude));
}

TrackStatistics statisticsOf(const Track& track, Measure measure) {
  TrackStatistics all;
  all.points = track.points.size();
  if (all.points == 0) return all;
  Heights heights;
  TrackSums sums(measure);
  const TrackPoint* last = &track.points.front();
  for (const TrackPoint& point : track.points) {
    const double surface = sums.add(point);
    all.distance3dKm += slantDistance(surface, *last, point);
    if (point.altitudeKnown()) {
      heights.add(point.altitude);
      const bool first = all.knownAltitudes++ == 0;
      all.highest = first ? point.altitude : std::max(all.highest, point.altitude);
      all.lowest = first ? point.altitude : std::min(all.lowest, point.altitude);
    }
    if (point.speedKnown()) all.maxKmh = std::max(all.maxKmh, point.speedKmh);
    last = &point;
  }
  heights.end();
  all.climb = heights.climb;
  all.descent = heights.descent;
  all.distanceKm = sums.kilometers();
  all.bounds = sums.bounds();
  all.times = sums.times();
  return all;
}

}  // namespace vgps
