#include <cstdio>
#include <utility>
#include <vector>

#include "app/session/recording_texts.h"
#include "base/number.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/state_text.h"
#include "cli/text_rows.h"
#include "cli/track_input.h"
#include "files/input_file.h"
#include "library/document_layout.h"
#include "library/track_library.h"
#include "track/track_statistics.h"

namespace vgps {
namespace {

// "2010-07-05T09:03:04"; `between` is a blank in text for the user.
std::string timeText(const DateTime& time, char between) {
  char text[64];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u%c%02u:%02u:%02u", unsigned{time.year},
                unsigned{time.month}, unsigned{time.day}, between, unsigned{time.hour},
                unsigned{time.minute}, unsigned{time.second});
  return text;
}

std::string durationText(double seconds) {
  const auto whole = static_cast<uint64_t>(seconds);
  char text[64];
  std::snprintf(text, sizeof text, "%02llu:%02u:%02u",
                static_cast<unsigned long long>(whole / 3600),
                static_cast<unsigned>(whole / 60 % 60), static_cast<unsigned>(whole % 60));
  return text;
}

Json orNull(bool known, double value) { return known ? Json(value) : Json(nullptr); }

Json pointJson(const TrackPoint& point) {
  Json json = {{"longitude", point.longitude},
               {"latitude", point.latitude},
               {"altitude", orNull(point.altitudeKnown(), point.altitude)},
               {"time", nullptr},
               {"utc", nullptr}};
  if (point.receiverUtc != 0) json["utc"] = isoUtcText(point.receiverUtc);
  if (point.localTime.month != 0) json["time"] = timeText(point.localTime, 'T');
  return json;
}

// Unknown values are null.
Json infoJson(const Track& track, const TrackStatistics& all) {
  const bool heights = all.knownAltitudes > 0;
  Json json = {{"name", track.name},
               {"startUtc", nullptr},
               {"points", all.points},
               {"distanceKm", all.distanceKm},
               {"distance3dKm", orNull(heights, all.distance3dKm)},
               {"durationSeconds", nullptr},
               {"movingSeconds", nullptr},
               {"climb", orNull(heights, all.climb)},
               {"descent", orNull(heights, all.descent)},
               {"maxSpeedKmh", orNull(all.maxKmh > 0, all.maxKmh)},
               {"bounds", nullptr},
               {"first", nullptr},
               {"last", nullptr}};
  if (track.startUtc != 0) json["startUtc"] = isoUtcText(track.startUtc);
  if (all.points > 0 && all.knownAltitudes == 0) json["climb"] = json["descent"] = nullptr;
  if (all.times) {
    json["durationSeconds"] = all.times->seconds;
    json["movingSeconds"] = all.times->movingSeconds;
  }
  if (!all.bounds) return json;
  json["bounds"] = {{"west", all.bounds->west},
                    {"south", all.bounds->south},
                    {"east", all.bounds->east},
                    {"north", all.bounds->north}};
  json["first"] = pointJson(track.points.front());
  json["last"] = pointJson(track.points.back());
  return json;
}

void addTimes(const TrackStatistics& all, std::vector<TextRow>& rows) {
  if (!all.times) {
    rows.push_back({"Time", "not recorded"});
    return;
  }
  const TrackTimes& times = *all.times;
  rows.push_back({"Time", timeText(times.first, ' ') + " to " + timeText(times.last, ' ')});
  rows.push_back({"Duration", durationText(times.seconds) + ", moving " +
                                  durationText(times.movingSeconds) + ", stopped " +
                                  durationText(times.seconds - times.movingSeconds)});
  rows.push_back({"Speed", "average " + fixedText(all.averageKmh(), 2) + " km/h, moving " +
                               fixedText(all.movingKmh(), 2) + " km/h"});
}

std::vector<TextRow> infoRows(const Track& track, const TrackStatistics& all) {
  std::vector<TextRow> rows = {{"Track", track.name}};
  if (track.startUtc != 0) rows.push_back({"Start", startText(track.startUtc)});
  rows.push_back({"Points", std::to_string(all.points)});
  if (!all.bounds) return rows;
  const bool heights = all.knownAltitudes > 0;
  const auto meters = [heights](double value) {
    return orDashes(heights, fixedText(value, 0)) + " m";
  };
  rows.push_back({"Length", fixedText(all.distanceKm, 3) + " km, with altitude " +
                                orDashes(heights, fixedText(all.distance3dKm, 3)) + " km"});
  addTimes(all, rows);
  const bool speeds = all.maxKmh > 0;
  rows.push_back({"Maximum speed", orDashes(speeds, fixedText(all.maxKmh, 2)) + " km/h"});
  rows.push_back({"Altitude", meters(all.lowest) + " to " + meters(all.highest) + ", climb " +
                                  meters(all.climb) + ", descent " + meters(all.descent)});
  const TrackBounds& bounds = *all.bounds;
  rows.push_back({"Southwest", fixedText(bounds.south, 6) + "," + fixedText(bounds.west, 6)});
  rows.push_back({"Northeast", fixedText(bounds.north, 6) + "," + fixedText(bounds.east, 6)});
  return rows;
}

bool refuse(const std::string& why) {
  fail(why);
  return false;
}

// Whether `wanted` names the track by its number, from 1, or by its name.
bool isWanted(const std::string& wanted, size_t number, const std::string& name) {
  return wanted.empty() || wanted == name || wanted == std::to_string(number);
}

// The tracks of a library document that are wanted. Nothing is written beside it.
bool readLibrary(const InfoOptions& options, std::vector<Track>& tracks) {
  InputFile file(options.file);
  const DocumentLayout layout = readLayout(file.source());
  if (!file || file.failed()) return refuse("cannot read " + options.file);
  if (layout.state == LibraryState::notALibrary) {
    return refuse(options.file + " is not a track file");
  }
  for (size_t i = 0; i < layout.tracks.size(); ++i) {
    const TrackSummary& summary = layout.tracks[i];
    const TrackRange& range = layout.places[i];
    if (!isWanted(options.track, i + 1, summary.name)) continue;
    std::string text;
    if (!file.readAt(range.begin, range.end - range.begin, text)) {
      return refuse("cannot read " + options.file);
    }
    if (summary.damaged) {
      warn(options.file + " is damaged: only the readable points of " + summary.name + " are used");
    }
    tracks.emplace_back();
    parseTrack(text, options.speedUnit, tracks.back());
    tracks.back().name = summary.name;
  }
  if (!tracks.empty() || options.track.empty()) return true;
  return refuse(options.file + " has no track " + options.track +
                "; number of tracks: " + std::to_string(layout.tracks.size()));
}

}  // namespace

int runInfo(const InfoOptions& options) {
  std::vector<Track> tracks;
  const bool library = isLibraryFile(options.file);
  if (library) {
    if (!readLibrary(options, tracks)) return 1;
  } else {
    if (!options.track.empty()) return fail(options.file + " is not a track library");
    TrackInput input;
    if (!readTrackInput(options.file, options.speedUnit, input)) return 1;
    tracks.push_back(std::move(input.track));
  }
  Json all = Json::array();
  std::string text;
  for (const Track& track : tracks) {
    const TrackStatistics statistics =
        statisticsOf(track, options.asRecorded ? Measure::asRecorded : Measure::geodesic);
    if (options.json) {
      all.push_back(infoJson(track, statistics));
    } else {
      if (!text.empty()) text += "\n";
      text += alignedText(infoRows(track, statistics));
    }
  }
  if (options.json) {
    const bool one = !library || !options.track.empty();
    text = jsonText(one ? all.front() : all, 2) + "\n";
  } else if (tracks.empty()) {
    text = "The library has no tracks.\n";
  }
  std::fwrite(text.data(), 1, text.size(), stdout);
  return finishOutput();
}

}  // namespace vgps
