#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date_time.h"
#include "formats/xml_pull.h"
#include "xml/reader.h"

// The contents of other programs' files, in the common form between readers and writers.
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
  std::string_view name{};         // valid only during the call
};

enum class PathKind { track, route };

// Receives what a reader finds, in file order. Returning false stops the reader.
//
//   waypoint*  ( beginPath ( beginSegment point* )* endPath )*      in any order
class ExchangeSink {
 public:
  virtual ~ExchangeSink() = default;
  virtual bool waypoint(const ExchangePoint&) { return true; }
  // If the name is empty, it may follow with `endPath`.
  virtual bool beginPath(PathKind, std::string_view /*name*/) { return true; }
  // `own`: the segment has an element of its own; otherwise the points are directly in the path.
  virtual bool beginSegment(bool /*own*/) { return true; }
  virtual bool point(const ExchangePoint&) { return true; }
  // The name, if known by now.
  virtual bool endPath(std::string_view /*name*/) { return true; }
};

enum class ExchangeFormat { unknown, gpx, kml, loc, trackFile, kmz, geojson, csv };

enum class ReadingEnd {
  whole,
  stopped,  // by the sink
  damaged,  // everything readable before and after the damage was read
  noFile,
  unreadable,  // a read error, or an archive that cannot be unpacked
  empty,       // contains no element
  foreign,     // an unsupported root element
  tooLarge,    // an archive whose document is larger than kMostUnpacked
  noKml,       // an archive without a KML document
};

// What a reader reports in addition to the data.
struct ReadingNotes {
  ReadingEnd end = ReadingEnd::whole;
  ExchangeFormat format = ExchangeFormat::unknown;
  std::string root;           // name of the root element
  std::string collection;     // name of a KML document
  uint64_t badPositions = 0;  // not finite or not on the earth; left out
  uint64_t wordsAsZero = 0;   // coordinates that are not numbers, read as 0
  uint64_t odd = 0;           // KML coordinates without two numbers; left out
  uint64_t strayPoints = 0;   // outside any segment, in a track that has segments
  XmlDamage damage = XmlDamage::none;
  uint64_t damageOffset = 0;  // in bytes of the text as UTF-8
  XmlPlace damagePlace;       // only set by readers of whole files
  std::string unknownEncoding;
};

// Parses the decimal number at the start of the text, like the C library. Text without a number is
// 0 and sets `isWord`; "nan" and "inf" are not finite.
double exchangeNumber(std::string_view text, bool& isWord);

// Whether the position is on the earth: up to 180 degrees east or west (360 in files that continue
// past 180), and up to 90 north or south.
bool isOnEarth(double longitude, double latitude);

// "2010-07-15T10:00:00Z", optionally with fractions of a second and a UTC offset; year 0 if it is
// not a time.
DateTime isoTime(std::string_view text);
// The reverse, into a buffer of 32 bytes, with milliseconds if there are any. Returns the end.
char* writeIsoTime(char* out, const DateTime& utc);

}  // namespace vgps
