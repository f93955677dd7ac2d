#include <cstdio>

#include "base/number.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/state_text.h"
#include "cli/text_rows.h"
#include "cli/track_input.h"
#include "track/track_statistics.h"

namespace vgps {
namespace {

// "2010-07-05T09:03:04", with a blank for the user.
std::string timeText(const DateTime& time, char between) {
  char text[64];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u%c%02u:%02u:%02u", unsigned{time.year},
                unsigned{time.month}, unsigned{time.day}, between, unsigned{time.hour},
                unsigned{time.minute}, unsigned{time.second});
  return text;
}

// "2010-07-05 07:03:04 UTC"
std::string startText(int64_t utc) {
  std::string text = isoUtcText(utc).substr(0, std::string_view("YYYY-MM-DD hh:mm:ss").size());
  text[text.find('T')] = ' ';
  return text + " UTC";
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

// What is not known is null.
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
               {"maxSpeedKmh", orNull(all.greatestKmh > 0, all.greatestKmh)},
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
  const auto metres = [heights](double value) {
    return orDashes(heights, fixedText(value, 0)) + " m";
  };
  rows.push_back({"Length", fixedText(all.distanceKm, 3) + " km, with altitude " +
                                orDashes(heights, fixedText(all.distance3dKm, 3)) + " km"});
  addTimes(all, rows);
  const bool speeds = all.greatestKmh > 0;
  rows.push_back({"Maximum speed", orDashes(speeds, fixedText(all.greatestKmh, 2)) + " km/h"});
  rows.push_back({"Altitude", metres(all.lowest) + " to " + metres(all.highest) + ", climb " +
                                  metres(all.climb) + ", descent " + metres(all.descent)});
  const TrackBounds& bounds = *all.bounds;
  rows.push_back({"Southwest", fixedText(bounds.south, 6) + "," + fixedText(bounds.west, 6)});
  rows.push_back({"Northeast", fixedText(bounds.north, 6) + "," + fixedText(bounds.east, 6)});
  return rows;
}

}  // namespace

int runInfo(const InfoOptions& options) {
  TrackInput input;
  if (!readTrackInput(options.file, options.speedUnit, input)) return 1;
  const TrackStatistics all =
      statisticsOf(input.track, options.asRecorded ? Measure::asRecorded : Measure::geodesic);
  const std::string text = options.json ? jsonText(infoJson(input.track, all), 2) + "\n"
                                        : alignedText(infoRows(input.track, all));
  std::fwrite(text.data(), 1, text.size(), stdout);
  return finishOutput();
}

}  // namespace vgps
