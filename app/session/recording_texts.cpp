#include "app/session/recording_texts.h"

#include <array>
#include <cmath>
#include <optional>

#include "base/number.h"
#include "base/texts.h"
#include "geo/units.h"
#include "track/track_statistics.h"

namespace vgps {
namespace {

std::string counted(uint64_t count, Text one, Text several) {
  return count == 1 ? std::string(textOf(one)) : textWith(several, std::to_string(count));
}

std::string durationText(double seconds) {
  const auto minutes = static_cast<uint64_t>(std::llround(seconds / 60));
  if (minutes > 0) return counted(minutes, Text::oneMinute, Text::minutes);
  return counted(static_cast<uint64_t>(seconds), Text::oneSecond, Text::seconds);
}

std::string lengthText(double kilometers, int32_t unit) {
  return distanceText(distanceInUnit(kilometers, unit), unit);
}

// Recorded points have the computer's clock, those of files the local time.
std::optional<double> secondsOf(const Track& track) {
  const TrackPoint& first = track.points.front();
  const TrackPoint& last = track.points.back();
  for (DateTime TrackPoint::*clock : {&TrackPoint::utcTime, &TrackPoint::localTime}) {
    const std::optional<int64_t> begin = millisecondsOf(first.*clock);
    const std::optional<int64_t> end = millisecondsOf(last.*clock);
    if (begin && end && *end > *begin) return static_cast<double>(*end - *begin) / kSecondMs;
  }
  return std::nullopt;
}

}  // namespace

std::string trackTotalsText(const Track& track, int32_t distanceUnit) {
  std::string text = counted(track.points.size(), Text::onePoint, Text::points);
  if (track.points.empty()) return text;
  text += ", " + lengthText(statisticsOf(track).distanceKm, distanceUnit);
  const std::optional<double> seconds = secondsOf(track);
  return seconds ? text + ", " + durationText(*seconds) : text;
}

std::string waitingText(const Recorder& recorder) {
  const RecordingOptions& options = recorder.options;
  switch (recorder.recording().waitingFor()) {
    case RecordingRule::none: break;
    case RecordingRule::noPosition: return std::string(textOf(Text::waitsForPosition));
    case RecordingRule::jump: return std::string(textOf(Text::waitsForReach));
    case RecordingRule::manual: return std::string(textOf(Text::waitsForUser));
    case RecordingRule::everyNth:
      return textWith(Text::waitsForCount, std::to_string(options.everyNth));
    case RecordingRule::tooSlow:
      return textWith(Text::waitsForSpeed, fixedText(recorder.track.speedThreshold, 0));
    case RecordingRule::noChange: return std::string(textOf(Text::waitsForChange));
  }
  return {};
}

std::string startText(int64_t utc) {
  std::string text = isoUtcText(utc).substr(0, std::string_view("YYYY-MM-DDThh:mm").size());
  text[text.find('T')] = ' ';
  return text + " UTC";
}

std::string trackRowText(const TrackSummary& track, int32_t distanceUnit) {
  std::string text = track.name;
  if (track.startUtc != 0) text += ", " + startText(track.startUtc);
  return text + ", " + counted(track.points, Text::onePoint, Text::points) + ", " +
         lengthText(track.kilometers, distanceUnit);
}

}  // namespace vgps
