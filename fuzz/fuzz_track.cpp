#include <cmath>
#include <string>
#include <string_view>

#include "fuzz/quiet_hooks.h"
#include "track/editing.h"
#include "track/thinning.h"
#include "track/track_statistics.h"
#include "track/track_xml.h"

// Any text as a track: what is read of it can be worked with, and survives writing and reading.
namespace {

using namespace vgps;

RecordingOptions everything(size_t size) {
  RecordingOptions options;
  options.recordCell = options.recordSpeed = options.recordTime = options.recordCourse = true;
  options.speedUnit = static_cast<int32_t>(size % 4);
  return options;
}

void checkPoints(const Track& track) {
  for (const TrackPoint& point : track.points) {
    require(isPosition(point.longitude, point.latitude));
    require(point.name <= track.pointNames.size());
  }
  for (const TrackAttachment& attachment : track.attachments) {
    require(attachment.point < track.points.size());
  }
}

void checkStatistics(const Track& track) {
  const TrackStatistics all = statisticsOf(track);
  require(all.points == track.points.size() && all.bounds.has_value() == (all.points > 0));
  require(std::isfinite(all.distanceKm) && all.distanceKm >= 0);
  require(all.climb >= 0 && all.descent >= 0 && all.movingKmh() >= 0);
  if (!all.times) return;
  require(all.times->movingSeconds >= 0 && all.times->movingSeconds <= all.times->seconds);
}

// Apart and together again, and twice the other way round: the same track.
void checkEditing(Track track, size_t size) {
  const size_t count = track.points.size();
  const size_t attachments = track.attachments.size();
  const RecordingOptions options = everything(size);
  const std::string before = trackText(track, options, {}, 0);
  reverse(track);
  reverse(track);
  if (count > 0) {
    if (const auto second = split(track, size % count, 1)) join(track, *second);
  }
  require(track.points.size() == count && track.attachments.size() == attachments);
  // The order of the attachments may have changed, not their number or place.
  require(trackText(track, options, {}, 0).size() == before.size() || attachments > 9);
  trim(track, count / 3, count / 2);
  checkPoints(track);
}

std::string rewritten(const std::string& text, const RecordingOptions& options, bool& whole) {
  XmlDocument document;
  document.Load(text, XmlLoadMode::text);
  Track track;
  whole = readTrack(document.GetRootElement(), options.speedUnit, track);
  checkPoints(track);
  return trackText(track, options, track.name, 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const RecordingOptions options = everything(size);
  bool whole = false;
  // The first writing rounds positions, and with that the nearest to 0,0 may go.
  const std::string first = rewritten({reinterpret_cast<const char*>(data), size}, options, whole);
  const std::string second = rewritten(first, options, whole);
  require(whole);
  const std::string third = rewritten(second, options, whole);
  require(whole && third.size() == second.size());

  XmlDocument document;
  document.Load(third, XmlLoadMode::text);
  Track track;
  readTrack(document.GetRootElement(), options.speedUnit, track);
  checkStatistics(track);
  checkEditing(track, size);
  normalize(track, options);
  checkPoints(track);
  return 0;
}
