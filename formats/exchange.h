#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date_time.h"
#include "formats/xml_pull.h"
#include "xml/reader.h"

// What files of other programs hold, in the form that every reader gives and every writer takes.
namespace vgps {

struct ExchangePoint {
  double longitude = 0;  // degrees
  double latitude = 0;
  double altitude = 0;  // meters
  bool hasAltitude = false;
  bool hasName = false;
  DateTime utc{};                  // year 0: unknown
  std::optional<double> speed{};   // meters per second
  std::optional<double> course{};  // degrees
  std::string_view name{};         // while it is handed over
};

enum class PathKind { track, route };

// Takes what a reader finds, in the order of the file. A false return ends the reading.
//
//   waypoint*  ( beginPath ( beginSegment point* )* endPath )*      in any order
class ExchangeSink {
 public:
  virtual ~ExchangeSink() = default;
  virtual bool waypoint(const ExchangePoint&) { return true; }
  // A name that is empty may come with `endPath`.
  virtual bool beginPath(PathKind, std::string_view /*name*/) { return true; }
  // `own`: an element around the points says so; otherwise they stand in the path itself.
  virtual bool beginSegment(bool /*own*/) { return true; }
  virtual bool point(const ExchangePoint&) { return true; }
  // The name as far as it is known now.
  virtual bool endPath(std::string_view /*name*/) { return true; }
};

enum class ExchangeFormat { unknown, gpx, kml, loc, trackFile, kmz, geojson, csv };

enum class ReadingEnd {
  whole,
  stopped,  // by the sink
  damaged,  // what stood in front of the damage was read, and behind it what could be
  noFile,
  unreadable,  // the system did not give its bytes, or an archive cannot be unpacked
  empty,       // no element in it
  foreign,     // another root element than those that are read
  tooLarge,    // an archive whose document would take more than kMostUnpacked
  noKml,       // an archive without one
};

// What a reader has to say besides what it handed over.
struct ReadingNotes {
  ReadingEnd end = ReadingEnd::whole;
  ExchangeFormat format = ExchangeFormat::unknown;
  std::string root;           // the name of the root element
  std::string collection;     // of a KML document: its name
  uint64_t badPositions = 0;  // not finite or not on the earth: left out
  uint64_t wordsAsZero = 0;   // coordinates that are not numbers and were read as 0
  uint64_t odd = 0;           // coordinates of a KML text without two numbers: left out
  uint64_t strayPoints = 0;   // outside of a segment in a track that has segments
  XmlDamage damage = XmlDamage::none;
  uint64_t damageOffset = 0;  // bytes of the text as UTF-8
  XmlPlace damagePlace;       // where the reader of whole files knows it
  std::string unknownEncoding;
};

// A number of a file: the decimal number at its start, as the C library reads it. Text without one
// is 0 and counts as a word; "nan" and "inf" are not finite.
double exchangeNumber(std::string_view text, bool& isWord);

// On the earth: at most 180 degrees east or west (360 where a file counts on), 90 north or south.
bool isOnEarth(double longitude, double latitude);

// "2010-07-15T10:00:00Z", with fractions of a second and offsets from UTC; year 0 when it is not a
// time.
DateTime isoTime(std::string_view text);
// The reverse, into room for 32 bytes; the end. Milliseconds where there are any.
char* writeIsoTime(char* out, const DateTime& utc);

}  // namespace vgps
