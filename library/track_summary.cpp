#include <algorithm>
#include <chrono>

#include "geo/distance.h"
#include "library/track_store.h"

namespace vgps {
namespace {

std::chrono::year_month_day dateOf(const DateTime& time) {
  return {std::chrono::year(time.year), std::chrono::month(time.month), std::chrono::day(time.day)};
}

bool hasTime(const TrackPoint& point) {
  return point.localTime.year != 0 && dateOf(point.localTime).ok();
}

int64_t secondsOf(const DateTime& time) {
  return std::chrono::sys_days(dateOf(time)).time_since_epoch().count() * int64_t{86400} +
         time.hour * 3600 + time.minute * 60 + time.second;
}

void widen(TrackSummary& summary, const TrackPoint& point) {
  summary.west = std::min(summary.west, point.longitude);
  summary.east = std::max(summary.east, point.longitude);
  summary.south = std::min(summary.south, point.latitude);
  summary.north = std::max(summary.north, point.latitude);
}

double kilometres(const TrackPoint& from, const TrackPoint& to) {
  return surfaceDistance(static_cast<float>(from.longitude), static_cast<float>(from.latitude),
                         static_cast<float>(to.longitude), static_cast<float>(to.latitude), 0, 0);
}

}  // namespace

TrackSummary summaryOf(const Track& track) {
  TrackSummary summary;
  summary.name = track.name;
  summary.points = track.points.size();
  if (track.points.empty()) return summary;
  summary.west = summary.east = track.points.front().longitude;
  summary.south = summary.north = track.points.front().latitude;
  const TrackPoint* previous = nullptr;
  const TrackPoint* last = nullptr;
  for (const TrackPoint& point : track.points) {
    widen(summary, point);
    if (previous != nullptr) summary.kilometres += kilometres(*previous, point);
    previous = &point;
    if (!hasTime(point)) continue;
    if (last == nullptr) summary.date = point.localTime;
    last = &point;
  }
  if (last != nullptr) summary.seconds = secondsOf(last->localTime) - secondsOf(summary.date);
  return summary;
}

}  // namespace vgps
