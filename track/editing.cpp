#include "track/editing.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

namespace vgps {
namespace {

bool hasTime(const TrackPoint& point) { return point.localTime.year != 0; }

auto inOrder(const DateTime& t) {
  return std::tie(t.year, t.month, t.day, t.hour, t.minute, t.second, t.millisecond);
}

// Appends the points of `from` from `first` to before `end`, with their names and attachments.
void append(Track& to, const Track& from, size_t first, size_t end) {
  const auto shift = static_cast<uint32_t>(to.points.size());
  for (size_t i = first; i < end; ++i) {
    to.points.push_back(from.points[i]);
    const std::string_view name = pointName(from, from.points[i]);
    setPointName(to, to.points.back(), name);
  }
  for (const TrackAttachment& attachment : from.attachments) {
    if (attachment.point < first || attachment.point >= end) continue;
    const auto place = static_cast<uint32_t>(attachment.point - first) + shift;
    to.attachments.push_back({place, attachment.path});
  }
}

// When the point was recorded, UTC in milliseconds since 1970; 0: unknown.
int64_t utcOf(const Track& track, size_t index) {
  const TrackPoint& point = track.points[index];
  if (point.receiverUtc != 0 || track.startUtc == 0) return point.receiverUtc;
  const std::optional<int64_t> first = millisecondsOf(track.points.front().localTime);
  const std::optional<int64_t> then = millisecondsOf(point.localTime);
  return first && then ? track.startUtc + *then - *first : 0;
}

void dropFrom(Track& track, size_t index) {
  track.points.resize(index);
  std::erase_if(track.attachments, [&](const TrackAttachment& a) { return a.point >= index; });
}

}  // namespace

void join(Track& track, const Track& other) {
  if (&track == &other) return join(track, Track(other));
  if (track.startUtc == 0) track.startUtc = other.startUtc;
  append(track, other, 0, other.points.size());
}

std::optional<Track> split(Track& track, size_t index, uint32_t number) {
  if (index == 0 || index >= track.points.size()) return std::nullopt;
  Track second;
  second.name = "Split " + std::to_string(number);
  second.angleThreshold = track.angleThreshold;
  second.speedThreshold = track.speedThreshold;
  second.altitudeThreshold = track.altitudeThreshold;
  second.startUtc = utcOf(track, index);
  append(second, track, index, track.points.size());
  dropFrom(track, index);
  return second;
}

void reverse(Track& track) {
  std::reverse(track.points.begin(), track.points.end());
  const auto last = static_cast<uint32_t>(track.points.size() - 1);
  for (TrackAttachment& attachment : track.attachments) attachment.point = last - attachment.point;
}

bool trim(Track& track, size_t first, size_t last) {
  if (first > last || last >= track.points.size()) return false;
  if (first > 0) track.startUtc = utcOf(track, first);
  dropFrom(track, last + 1);
  std::erase_if(track.attachments, [&](const TrackAttachment& a) { return a.point < first; });
  for (TrackAttachment& attachment : track.attachments) {
    attachment.point -= static_cast<uint32_t>(first);
  }
  track.points.erase(track.points.begin(), track.points.begin() + first);
  return true;
}

bool trimToTimes(Track& track, const DateTime& from, const DateTime& to) {
  const auto late = [&](const TrackPoint& p) {
    return hasTime(p) && inOrder(p.localTime) >= inOrder(from);
  };
  const auto early = [&](const TrackPoint& p) {
    return hasTime(p) && inOrder(p.localTime) <= inOrder(to);
  };
  const size_t count = track.points.size();
  size_t first = 0;
  while (first < count && !late(track.points[first])) ++first;
  size_t end = count;
  while (end > first && !early(track.points[end - 1])) --end;
  return first < end && trim(track, first, end - 1);
}

}  // namespace vgps
