#include "formats/imports.h"

#include <algorithm>

#include "base/number.h"
#include "base/texts.h"
#include "files/whole_file.h"
#include "formats/collection.h"
#include "formats/reading.h"
#include "geo/units.h"
#include "xml/escape.h"

namespace vgps {
namespace {

constexpr size_t kManyPoints = 50;

std::string countText(uint64_t count) { return decimalText(count); }

// A file's name without folder and extension.
std::string stemOf(const std::string& path) {
  const std::string stem = withoutExtension(path);
  return stem.substr(stem.find_last_of("/\\") + 1);
}

// What was found in tracks and is left out of them.
struct LeftOut {
  uint64_t segments = 0;
  uint64_t segmentPoints = 0;
  uint64_t stray = 0;
  uint64_t times = 0;
  uint64_t speeds = 0;
  uint64_t courses = 0;
  uint64_t movingTracks = 0;
  uint64_t movingPoints = 0;
};

class Import {
 public:
  Import(const std::string& fileName, const ImportTarget& target, ExchangeHooks& hooks,
         const ImportOptions& options)
      : fileName_(fileName),
        target_(target),
        hooks_(hooks),
        options_(options),
        offset_(utcOffsetMinutes(options.clock)) {}

  bool read() {
    notes_ = readExchangeFile(
        fileName_, file_, options_.speedUnit, offset_,
        [this](uint64_t done, uint64_t total) { return hooks_.progress(done, total); });
    result_.end = notes_.end;
    return notes_.end == ReadingEnd::whole || notes_.end == ReadingEnd::damaged;
  }
  ExchangeFormat format() const { return notes_.format; }
  bool hasPaths() const { return !file_.paths.empty(); }

  ImportResult gpx();
  ImportResult kml(bool asWaypoints);
  ImportResult finish(const std::string& message);

 private:
  void importWaypoints(const std::vector<size_t>& chosen);
  void importTracks();
  std::vector<size_t> chosenOf(Answer all, Text caption, Text column,
                               const std::vector<std::string>& names);
  std::vector<std::string> waypointNames() const;
  void addTrack(std::string_view name, const std::vector<CollectedPoint>& points);
  void addPath(const CollectedPath& path, const std::string& name);
  void addPoint(std::string& text, const CollectedPoint& point);
  std::string waypointsMessage() const;
  bool placemarks(bool& asTracks);
  std::string kmlTracks();
  std::vector<CollectedPath> coordinateLists();
  std::string singleName(const CollectedPath& path) const;
  void addLines();
  void line(Text text, uint64_t count) {
    if (count > 0) result_.lines.push_back(textWith(text, countText(count)));
  }

  const std::string& fileName_;
  const ImportTarget& target_;
  ExchangeHooks& hooks_;
  ImportOptions options_;
  const int32_t offset_;
  ExchangeCollection file_;
  ReadingNotes notes_;
  XmlDocument document_;
  std::vector<XmlElement> elements_;
  LeftOut left_;
  ImportResult result_;
};

std::vector<size_t> everyOne(size_t count) {
  std::vector<size_t> all(count);
  for (size_t i = 0; i < count; ++i) all[i] = i;
  return all;
}

std::vector<size_t> Import::chosenOf(Answer all, Text caption, Text column,
                                     const std::vector<std::string>& names) {
  const size_t count = names.size();
  if (all == Answer::yes) return everyOne(count);
  std::vector<size_t> chosen = hooks_.choose(textOf(caption), textOf(column), names);
  std::erase_if(chosen, [count](size_t index) { return index >= count; });
  return chosen;
}

// Numbers count all of the file, chosen or not.
std::vector<std::string> Import::waypointNames() const {
  std::vector<std::string> names;
  for (const CollectedWaypoint& waypoint : file_.waypoints) {
    const std::string numbered = "Wp #" + std::to_string(names.size() + 1);
    const bool named = waypoint.point.name != 0;
    names.push_back(named ? std::string(file_.nameOf(waypoint.point)) : numbered);
  }
  return names;
}

void Import::importWaypoints(const std::vector<size_t>& chosen) {
  const std::vector<std::string> names = waypointNames();
  std::vector<StoredWaypoint> added;
  for (const size_t index : chosen) {
    const CollectedPoint& point = file_.waypoints[index].point;
    added.push_back({{names[index], point.longitude, point.latitude, point.altitude}});
    left_.times += point.utc.year != 0 ? 1 : 0;
    left_.speeds += point.hasSpeed ? 1 : 0;
    left_.courses += point.hasCourse ? 1 : 0;
  }
  if (added.empty()) return;
  const LibraryResult saved = target_.waypoints.add(added);
  if (saved == LibraryResult::done) result_.waypoints += static_cast<uint32_t>(added.size());
  if (saved != LibraryResult::done) result_.saved = saved;
}

// The attributes of a point in the library's own format.
void Import::addPoint(std::string& text, const CollectedPoint& point) {
  const auto number = [&](const char* name, double value, int decimals) {
    text += name;
    text += fixedText(value, decimals);
    text += '"';
  };
  number("<p x=\"", point.longitude, 6);
  number(" y=\"", point.latitude, 6);
  if (point.hasAltitude) number(" z=\"", point.altitude, 6);
  const bool hasTime = point.utc.year != 0;
  if (options_.complete && point.hasSpeed) {
    const Speeds speeds = speedsFromKnots(double{point.speed} / kMpsPerKnot);
    number(" spd=\"", speedInUnit(speeds, options_.speedUnit), 2);
  }
  if (options_.complete && hasTime) {
    const DateTime t = localFromUtc(point.utc, offset_);
    char time[64];
    std::snprintf(time, sizeof time, " time=\"%02u-%02u-%04u %02u:%02u:%02u\"", unsigned{t.day},
                  unsigned{t.month}, unsigned{t.year}, unsigned{t.hour}, unsigned{t.minute},
                  unsigned{t.second});
    text += time;
  }
  if (options_.complete && point.hasCourse) number(" br=\"", point.course, 1);
  if (point.name != 0) text += " n=\"" + escapeXml(file_.nameOf(point)) + "\"";
  text += "/>";
  if (options_.complete) return;
  left_.times += hasTime ? 1 : 0;
  left_.speeds += point.hasSpeed ? 1 : 0;
  left_.courses += point.hasCourse ? 1 : 0;
}

void Import::addTrack(std::string_view name, const std::vector<CollectedPoint>& points) {
  std::string text = "<t n=\"" + escapeXml(name) + "\"";
  text += points.empty() ? " /" : ">";
  for (const CollectedPoint& point : points) addPoint(text, point);
  if (!points.empty()) text += "</t>";
  elements_.push_back(document_.createElement(text));
  result_.points += points.size();
}

// The first segment of its own, or the points of the path itself where it has none.
void Import::addPath(const CollectedPath& path, const std::string& name) {
  static const std::vector<CollectedPoint> kNone;
  const auto own = [](const CollectedSegment& segment) { return segment.own; };
  const bool anyOwn = std::any_of(path.segments.begin(), path.segments.end(), own);
  size_t number = 0;
  for (const CollectedSegment& segment : path.segments) {
    if (segment.own != anyOwn && !options_.complete) {
      left_.stray += segment.points.size();
      continue;
    }
    ++number;
    if (number == 1) {
      addTrack(name, segment.points);
    } else if (options_.complete) {
      if (!segment.points.empty()) {
        addTrack(name + " (" + std::to_string(number) + ")", segment.points);
      }
    } else {
      ++left_.segments;
      left_.segmentPoints += segment.points.size();
    }
  }
  if (number == 0) addTrack(name, kNone);
}

void Import::importTracks() {
  if (elements_.empty()) return;
  const LibraryResult saved = target_.tracks.import(elements_);
  if (saved == LibraryResult::done) {
    result_.tracks = static_cast<uint32_t>(elements_.size());
  } else {
    result_.saved = saved;
    result_.points = 0;
  }
}

ImportResult Import::gpx() {
  if (!file_.waypoints.empty()) {
    const std::string count = countText(file_.waypoints.size());
    const Answer all = hooks_.ask(textWith(Text::askToImportWaypoints, count), false);
    importWaypoints(chosenOf(all, Text::chooseWaypoints, Text::waypoint, waypointNames()));
  }
  if (!file_.paths.empty()) {
    std::vector<std::string> names;
    for (const CollectedPath& path : file_.paths) {
      names.push_back(path.name.empty() ? "Trk #" + std::to_string(names.size() + 1) : path.name);
    }
    const Answer all = hooks_.askToImport(
        textWith(Text::askToImportTracks, countText(names.size())), options_.complete);
    const std::vector<size_t> chosen = chosenOf(all, Text::chooseTracks, Text::track, names);
    for (const size_t index : chosen) addPath(file_.paths[index], names[index]);
    importTracks();
  }
  return finish({});
}

std::string Import::waypointsMessage() const {
  if (result_.waypoints == 1) return std::string(textOf(Text::waypointImported));
  return textWith(Text::waypointsImported, countText(result_.waypoints));
}

// False: given up.
bool Import::placemarks(bool& asTracks) {
  if (file_.waypoints.empty()) return true;
  if (format() != ExchangeFormat::loc && file_.waypoints.size() > kManyPoints) {
    const Answer answer = hooks_.ask(std::string(textOf(Text::askManyPoints)), true);
    if (answer == Answer::cancel) return false;
    asTracks = answer == Answer::yes;
    if (asTracks) return true;
  }
  const std::vector<std::string> names = waypointNames();
  std::vector<size_t> chosen =
      hooks_.choose(textOf(Text::choosePlacemark), textOf(Text::waypoint), names);
  std::erase_if(chosen, [&](size_t index) { return index >= names.size(); });
  importWaypoints(chosen);
  return true;
}

// Every list of coordinates of the file in its order, the single ones of placemarks too. Tracks of
// moving positions are something else.
std::vector<CollectedPath> Import::coordinateLists() {
  std::vector<CollectedPath> lists;
  size_t next = 0;
  const auto addPlaces = [&](size_t before) {
    for (; next < file_.waypoints.size() && file_.waypoints[next].place < before; ++next) {
      CollectedPath& list = lists.emplace_back();
      list.name = file_.nameOf(file_.waypoints[next].point);
      list.segments.emplace_back().points.push_back(file_.waypoints[next].point);
      list.segments[0].points[0].name = 0;
    }
  };
  for (CollectedPath& path : file_.paths) {
    addPlaces(path.place);
    const bool moving =
        format() != ExchangeFormat::trackFile && !path.segments.empty() && path.segments[0].own;
    if (!moving || options_.complete) {
      lists.push_back(std::move(path));
      continue;
    }
    ++left_.movingTracks;
    left_.movingPoints += path.segments[0].points.size();
  }
  addPlaces(SIZE_MAX);
  return lists;
}

std::string Import::singleName(const CollectedPath& path) const {
  if (!notes_.collection.empty()) return notes_.collection;
  return path.name.empty() ? stemOf(fileName_) : path.name;
}

size_t pointsOf(const CollectedPath& path) {
  size_t count = 0;
  for (const CollectedSegment& segment : path.segments) count += segment.points.size();
  return count;
}

// What is told of the tracks of a KML file.
std::string Import::kmlTracks() {
  const std::vector<CollectedPath> lists = coordinateLists();
  size_t points = 0;
  for (const CollectedPath& list : lists) points += pointsOf(list);
  const bool single = std::all_of(lists.begin(), lists.end(),
                                  [](const CollectedPath& list) { return pointsOf(list) == 1; });
  if (points == 1 && hooks_.ask(std::string(textOf(Text::askOnePoint)), false) == Answer::yes) {
    for (const CollectedPath& list : lists) {
      if (pointsOf(list) != 1) continue;
      file_.waypoints.clear();
      ExchangePoint place{};
      const CollectedPoint& from = list.segments[0].points[0];
      place.longitude = from.longitude, place.latitude = from.latitude;
      place.altitude = from.altitude;
      const std::string name = list.name.empty() ? singleName(list) : list.name;
      place.name = name, place.hasName = true;
      file_.waypoint(place);
      importWaypoints({0});
    }
    return waypointsMessage();
  }
  if (single && lists.size() > 1) {
    std::vector<CollectedPoint> stations;
    for (const CollectedPath& list : lists) stations.push_back(list.segments[0].points[0]);
    addTrack(singleName({}), stations);
    importTracks();
    return textWith(Text::routeImported, countText(result_.points));
  }
  for (size_t i = 0; i < lists.size(); ++i) {
    addPath(lists[i],
            lists.size() == 1 ? singleName(lists[i]) : "Collection " + std::to_string(i + 1));
  }
  importTracks();
  if (result_.tracks == 1) return textWith(Text::trackImported, countText(result_.points));
  return textWith(Text::tracksImported, countText(result_.tracks));
}

ImportResult Import::kml(bool asWaypoints) {
  bool asTracks = !asWaypoints && format() != ExchangeFormat::loc;
  if (format() == ExchangeFormat::trackFile) asTracks = true;
  if (!asTracks && !placemarks(asTracks)) {
    result_.end = ReadingEnd::stopped;
    return result_;
  }
  if (asTracks) return finish(kmlTracks());
  for (const CollectedPath& path : file_.paths) {
    ++left_.segments;
    left_.segmentPoints += pointsOf(path);
  }
  return finish(waypointsMessage());
}

void Import::addLines() {
  const auto with = [this](Text text, const std::string& value) {
    result_.lines.push_back(textWith(text, value));
  };
  switch (notes_.end) {
    case ReadingEnd::foreign: with(Text::foreignRoot, notes_.root); break;
    case ReadingEnd::noFile:
    case ReadingEnd::unreadable: with(Text::importUnreadable, fileName_); break;
    case ReadingEnd::empty: with(Text::nothingToImport, fileName_); break;
    case ReadingEnd::tooLarge: with(Text::archiveTooLarge, fileName_); break;
    case ReadingEnd::noKml: with(Text::archiveWithoutKml, fileName_); break;
    case ReadingEnd::damaged:
      result_.lines.push_back(textWith(Text::damagedFrom, countText(notes_.damagePlace.line),
                                       countText(notes_.damagePlace.column)));
      break;
    case ReadingEnd::whole:
    case ReadingEnd::stopped: break;
  }
  if (left_.segments > 0) {
    result_.lines.push_back(
        textWith(Text::furtherSegments, countText(left_.segments), countText(left_.segmentPoints)));
  }
  if (left_.movingTracks > 0) {
    result_.lines.push_back(textWith(Text::movingTracksLeftOut, countText(left_.movingTracks),
                                     countText(left_.movingPoints)));
  }
  line(Text::strayPoints, left_.stray);
  line(Text::timesLeftOut, left_.times);
  line(Text::speedsLeftOut, left_.speeds);
  line(Text::coursesLeftOut, left_.courses);
  line(Text::positionsLeftOut, notes_.badPositions);
  line(Text::wordsAsZero, notes_.wordsAsZero);
  line(Text::oddCoordinates, notes_.odd);
  if (!notes_.unknownEncoding.empty()) with(Text::unknownEncoding, notes_.unknownEncoding);
  if (result_.saved != LibraryResult::done) {
    result_.lines.emplace_back(textOf(Text::libraryNotWritten));
  }
}

ImportResult Import::finish(const std::string& message) {
  addLines();
  result_.message = message;
  for (const std::string& text : result_.lines) {
    if (!result_.message.empty()) result_.message += '\n';
    result_.message += text;
  }
  if (!result_.message.empty()) hooks_.tell(result_.message);
  return result_;
}

}  // namespace

ImportResult ImportGpx(const std::string& fileName, const ImportTarget& target,
                       ExchangeHooks& hooks, const ImportOptions& options) {
  Import import(fileName, target, hooks, options);
  return import.read() ? import.gpx() : import.finish({});
}

ImportResult ImportKml(const std::string& fileName, bool asWaypoints, const ImportTarget& target,
                       ExchangeHooks& hooks, const ImportOptions& options) {
  Import import(fileName, target, hooks, options);
  return import.read() ? import.kml(asWaypoints) : import.finish({});
}

ImportResult ImportFile(const std::string& fileName, const ImportTarget& target,
                        ExchangeHooks& hooks, const ImportOptions& options) {
  Import import(fileName, target, hooks, options);
  if (!import.read()) return import.finish({});
  const bool isKml = import.format() != ExchangeFormat::gpx;
  return isKml ? import.kml(!import.hasPaths()) : import.gpx();
}

}  // namespace vgps
