#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "base/number.h"
#include "cli/commands.h"
#include "cli/track_input.h"
#include "geo/units.h"
#include "platform/files.h"
#include "track/editing.h"
#include "track/thinning.h"

namespace vgps {
namespace {

// Speeds are read and written in the same unit, whichever it is, so that the numbers in the file
// stay the same.
constexpr int32_t kUnit = kKmh;

bool isNumber(std::string_view text) {
  return !text.empty() && text.size() < 10 && std::all_of(text.begin(), text.end(), isDigit);
}

// "2010-07-05 09:03[:04]", or with a "T" instead of the blank.
std::optional<DateTime> readLocalTime(std::string_view text) {
  DateTime time;
  const auto hasForm = [&](std::string_view form) { return readDateTime(text, form, time); };
  const bool read = hasForm("YYYY-MM-DD hh:mm") || hasForm("YYYY-MM-DD hh:mm:ss") ||
                    hasForm("YYYY-MM-DDThh:mm") || hasForm("YYYY-MM-DDThh:mm:ss");
  if (!read) return std::nullopt;
  return isCalendarTime(time) ? std::optional(time) : std::nullopt;
}

int noSuchPoint(const TrackInput& input, const std::string& number) {
  return fail(input.path + " has no point " + number +
              "; number of points: " + std::to_string(input.track.points.size()));
}

int splitFile(const TrackOptions& options, std::span<TrackInput> inputs) {
  Track& track = inputs[0].track;
  const size_t count = track.points.size();
  if (options.at < 2 || options.at > count) {
    return fail(inputs[0].path + " cannot be split at point " + std::to_string(options.at) +
                "; its points are numbered 1 to " + std::to_string(count) +
                ", and each part needs at least one");
  }
  if (isSameFile(options.output, options.secondOutput)) {
    return fail("the two parts need different files; both are " + options.output);
  }
  const std::optional<Track> second = split(track, options.at - 1, 1);
  const TrackOutput outputs[] = {{track, options.output}, {*second, options.secondOutput}};
  return writeTrackOutputs(outputs, kUnit, inputs);
}

int thinFile(const TrackOptions& options, std::span<TrackInput> inputs) {
  constexpr double kMostMeters = 1000000;
  constexpr double kMostDegrees = 180;
  Track& track = inputs[0].track;
  RecordingOptions thinning;
  const bool whole = options.meters == std::floor(options.meters);
  if (!whole || options.meters > kMostMeters) {
    return fail("--meters must be a whole number from 1 to 1000000");
  }
  if (!(options.angle <= kMostDegrees)) return fail("--angle must not exceed 180 degrees");
  if (options.meters > 0) thinning.normalizeMeters = static_cast<int32_t>(options.meters);
  track.angleThreshold = static_cast<float>(options.angle);
  normalize(track, thinning);
  return writeTrackOutput({track, options.output}, kUnit, inputs);
}

// One end of the range as a point number or a time; with neither, it is the track's own end.
struct TrimEnd {
  std::optional<DateTime> time;
  size_t point = 0;
};

std::optional<TrimEnd> readEnd(const std::string& text, size_t standard) {
  if (text.empty()) return TrimEnd{std::nullopt, standard};
  if (isNumber(text)) return TrimEnd{std::nullopt, static_cast<size_t>(leadingInt(text))};
  const std::optional<DateTime> time = readLocalTime(text);
  if (!time) return std::nullopt;
  return TrimEnd{time, standard};
}

int trimFile(const TrackOptions& options, std::span<TrackInput> inputs) {
  constexpr DateTime kEarliest{};
  constexpr DateTime kLatest{
      .year = 9999, .month = 12, .day = 31, .hour = 23, .minute = 59, .second = 59};
  TrackInput& input = inputs[0];
  const std::optional<TrimEnd> from = readEnd(options.from, 1);
  const std::optional<TrimEnd> to = readEnd(options.to, input.track.points.size());
  if (!from || !to) {
    return fail((from ? options.to : options.from) +
                " is not a point number or a time; write times as \"2010-07-05 09:03\"");
  }
  if (from->point < 1 || from->point > input.track.points.size()) {
    return noSuchPoint(input, options.from.empty() ? "1" : options.from);
  }
  if (to->point < 1 || to->point > input.track.points.size()) return noSuchPoint(input, options.to);
  bool left = trim(input.track, from->point - 1, to->point - 1);
  if (left && (from->time || to->time)) {
    left = trimToTimes(input.track, from->time.value_or(kEarliest), to->time.value_or(kLatest));
  }
  if (!left) return fail("nothing of " + input.path + " lies in that range; no track was written");
  return writeTrackOutput({input.track, options.output}, kUnit, inputs);
}

}  // namespace

int runTrack(const TrackOptions& options) {
  std::vector<TrackInput> inputs(options.files.size());
  for (size_t i = 0; i < inputs.size(); ++i) {
    if (!readTrackInput(options.files[i], kUnit, inputs[i])) return 1;
  }
  Track& track = inputs[0].track;
  switch (options.action) {
    case TrackOptions::Action::split: return splitFile(options, inputs);
    case TrackOptions::Action::thin: return thinFile(options, inputs);
    case TrackOptions::Action::trim: return trimFile(options, inputs);
    case TrackOptions::Action::reverse: reverse(track); break;
    case TrackOptions::Action::join:
      for (size_t i = 1; i < inputs.size(); ++i) join(track, inputs[i].track);
      break;
  }
  return writeTrackOutput({track, options.output}, kUnit, inputs);
}

}  // namespace vgps
