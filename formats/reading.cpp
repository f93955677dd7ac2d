#include "formats/reading.h"

#include <algorithm>

#include "files/input_file.h"
#include "formats/archive.h"
#include "formats/readers.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "track/track_file.h"
#include "xml/tags.h"

namespace vgps {
namespace {

constexpr size_t kStart = 512;

struct Extension {
  std::string_view ending;
  ExchangeFormat format;
};

constexpr Extension kExtensions[] = {
    {".gpx", ExchangeFormat::gpx},       {".kml", ExchangeFormat::kml},
    {".kmz", ExchangeFormat::kmz},       {".loc", ExchangeFormat::loc},
    {".xml", ExchangeFormat::trackFile}, {".geojson", ExchangeFormat::geojson},
    {".json", ExchangeFormat::geojson},  {".csv", ExchangeFormat::csv},
};

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return lower;
}

// Counts what is read; a source that was stopped ends.
ByteSource counted(ByteSource source, uint64_t total, const ReadingProgress& progress,
                   bool& stopped) {
  if (!progress) return source;
  return [source = std::move(source), total, &progress, &stopped, done = uint64_t{0}](
             char* to, size_t size) mutable {
    if (stopped) return size_t{0};
    const size_t got = source(to, size);
    done += got;
    stopped = !progress(done, total);
    return stopped ? size_t{0} : got;
  };
}

ReadingEnd endOf(ArchiveReader::State state) {
  switch (state) {
    case ArchiveReader::State::ready: return ReadingEnd::whole;
    case ArchiveReader::State::noEntry: return ReadingEnd::noKml;
    case ArchiveReader::State::tooLarge: return ReadingEnd::tooLarge;
    default: return ReadingEnd::unreadable;
  }
}

void readArchive(const std::string& path, ExchangeSink& sink, const ReadingProgress& progress,
                 bool& stopped, ReadingNotes& notes) {
  ArchiveReader archive(path);
  notes.end = endOf(archive.openFirst(".kml"));
  if (notes.end != ReadingEnd::whole) return;
  readXmlExchange(counted(archive.source(), 0, progress, stopped), sink, notes);
  if (archive.state() != ArchiveReader::State::ready) notes.end = endOf(archive.state());
  if (notes.end == ReadingEnd::damaged) {
    ArchiveReader again(path);
    again.openFirst(".kml");
    notes.damagePlace = placeInText(again.source(), notes.damageOffset);
  }
  notes.format = ExchangeFormat::kmz;
}

void readTrackFile(const std::string& path, ExchangeSink& sink, int32_t speedUnit,
                   int32_t utcOffsetMinutes, ReadingNotes& notes) {
  Track track;
  bool foreign = false;
  switch (loadTrackFile(path, speedUnit, track, &foreign)) {
    case TrackLoading::whole: notes.end = ReadingEnd::whole; break;
    case TrackLoading::damaged: notes.end = ReadingEnd::damaged; break;
    case TrackLoading::notATrack: notes.end = ReadingEnd::foreign; return;
    case TrackLoading::noFile: notes.end = ReadingEnd::noFile; return;
    case TrackLoading::unreadable: notes.end = ReadingEnd::unreadable; return;
  }
  if (!handTrack(track, utcOffsetMinutes, sink)) notes.end = ReadingEnd::stopped;
}

}  // namespace

ExchangeFormat formatOfStart(std::string_view start) {
  if (start.starts_with("PK")) return ExchangeFormat::kmz;
  if (start.starts_with("\xEF\xBB\xBF")) start.remove_prefix(3);
  const size_t first = start.find_first_not_of(kXmlBlanks);
  if (first == std::string_view::npos) return ExchangeFormat::unknown;
  start.remove_prefix(first);
  if (start[0] == '{') return ExchangeFormat::geojson;
  const std::string header = lowerCase(start.substr(0, start.find_first_of("\r\n")));
  const bool columns = header.find("lat") != std::string::npos &&
                       header.find("lon") != std::string::npos &&
                       header.find('<') == std::string::npos;
  return columns ? ExchangeFormat::csv : ExchangeFormat::unknown;
}

ExchangeFormat formatOfName(std::string_view path) {
  const std::string lower = lowerCase(path);
  for (const Extension& extension : kExtensions) {
    if (lower.ends_with(extension.ending)) return extension.format;
  }
  return ExchangeFormat::unknown;
}

namespace {

// The receiver's time if it is known, otherwise the computer's.
DateTime utcOf(const TrackPoint& point, int32_t utcOffsetMinutes) {
  if (point.receiverUtc == 0) {
    return point.utcTime.year != 0 ? point.utcTime
                                   : utcFromLocal(point.localTime, utcOffsetMinutes);
  }
  DateTime utc = dateTimeOf(point.receiverUtc / kSecondMs);
  utc.millisecond = static_cast<uint16_t>(point.receiverUtc % kSecondMs);
  return utc;
}

}  // namespace

bool handTrack(const Track& track, int32_t utcOffsetMinutes, ExchangeSink& sink) {
  if (!sink.beginPath(PathKind::track, track.name) || !sink.beginSegment(true)) return false;
  const auto anyOf = [&](double TrackPoint::*value) {
    return std::any_of(track.points.begin(), track.points.end(),
                       [value](const TrackPoint& point) { return point.*value != 0; });
  };
  const bool speeds = anyOf(&TrackPoint::speedMps);
  const bool courses = anyOf(&TrackPoint::course);
  for (const TrackPoint& from : track.points) {
    ExchangePoint point{.longitude = from.longitude,
                        .latitude = from.latitude,
                        .altitude = from.altitudeKnown() ? from.preciseAltitude() : 0,
                        .hasAltitude = from.altitudeKnown()};
    point.utc = utcOf(from, utcOffsetMinutes);
    if (speeds && from.speedKnown()) point.speed = from.speedMps;
    if (courses && from.courseKnown()) point.course = from.course;
    point.name = pointName(track, from);
    point.hasName = !point.name.empty();
    if (!sink.point(point)) return false;
  }
  return sink.endPath(track.name);
}

ReadingNotes readExchangeFile(const std::string& path, ExchangeSink& sink, int32_t speedUnit,
                              int32_t utcOffsetMinutes, const ReadingProgress& progress) {
  ReadingNotes notes;
  const FileKind kind = fileKind(path);
  InputFile file(path);
  if (kind != FileKind::regular || !file) {
    notes.end = kind == FileKind::none ? ReadingEnd::noFile : ReadingEnd::unreadable;
    return notes;
  }
  FileStamp stamp;
  fileStamp(path, stamp);
  std::string start;
  file.readAt(0, std::min<uint64_t>(kStart, stamp.size), start);
  InputFile whole(path);
  bool stopped = false;
  ByteSource source = counted(whole.source(), stamp.size, progress, stopped);
  switch (formatOfStart(start)) {
    case ExchangeFormat::kmz: readArchive(path, sink, progress, stopped, notes); break;
    case ExchangeFormat::geojson: readGeoJson(std::move(source), sink, notes); break;
    case ExchangeFormat::csv: readCsv(std::move(source), sink, notes); break;
    default: readXmlExchange(std::move(source), sink, notes); break;
  }
  if (notes.format == ExchangeFormat::trackFile) {
    readTrackFile(path, sink, speedUnit, utcOffsetMinutes, notes);
  }
  if (notes.end == ReadingEnd::damaged && notes.damage != XmlDamage::none &&
      notes.format != ExchangeFormat::kmz) {
    InputFile again(path);
    notes.damagePlace = placeInText(again.source(), notes.damageOffset);
  }
  if (stopped) notes.end = ReadingEnd::stopped;
  if (!stopped && whole.failed()) notes.end = ReadingEnd::unreadable;
  return notes;
}

}  // namespace vgps
