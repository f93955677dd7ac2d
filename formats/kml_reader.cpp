#include <algorithm>
#include <cmath>
#include <vector>

#include "formats/readers.h"
#include "xml/tags.h"

// <kml> <Document> <name>The collection</name>
//   <Folder> ...
//     <Placemark> <name>...</name> <Point> <coordinates>lon,lat,alt</coordinates> </Point>
//     </Placemark> <Placemark> ... <LineString> <coordinates>lon,lat,alt lon,lat,alt</coordinates>
//     ... <Placemark> ... <gx:Track> <when>...</when> <gx:coord>lon lat alt</gx:coord> ...
//
// Elements are found at any depth, whatever the root is.
namespace vgps {
namespace {

constexpr size_t kLongestNumber = 400;

// Parses one number of a coordinate text and returns where it ends.
struct Part {
  double value = 0;
  bool isNumber = false;
};

bool isSeparator(char c) { return isXmlBlank(c) || c == ','; }

Part takePart(std::string_view& rest) {
  const size_t end =
      static_cast<size_t>(std::find_if(rest.begin(), rest.end(), isSeparator) - rest.begin());
  bool isWord = false;
  Part part;
  part.value = exchangeNumber(rest.substr(0, std::min(end, kLongestNumber)), isWord);
  part.isNumber = !isWord;
  rest.remove_prefix(end);
  return part;
}

// Skips a comma and the spaces after it.
bool takeComma(std::string_view& rest) {
  if (rest.empty() || rest[0] != ',') return false;
  rest.remove_prefix(1);
  while (!rest.empty() && isXmlBlank(rest[0])) rest.remove_prefix(1);
  return true;
}

enum class Triple { good, odd, bad };

// "lon,lat,alt" or "lon,lat"; any characters attached to it are skipped.
Triple takeTriple(std::string_view& rest, ExchangePoint& point) {
  const Part longitude = takePart(rest);
  Part latitude;
  Part altitude;
  if (takeComma(rest)) latitude = takePart(rest);
  if (takeComma(rest)) altitude = takePart(rest);
  while (!rest.empty() && !isXmlBlank(rest[0])) rest.remove_prefix(1);
  point = {};
  point.longitude = longitude.value;
  point.latitude = latitude.value;
  point.hasAltitude = altitude.isNumber && std::isfinite(altitude.value);
  if (point.hasAltitude) point.altitude = altitude.value;
  if (!longitude.isNumber || !latitude.isNumber) return Triple::odd;
  return isOnEarth(longitude.value, latitude.value) ? Triple::good : Triple::bad;
}

class KmlReader {
 public:
  KmlReader(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes)
      : xml_(xml), sink_(sink), notes_(notes) {}

  bool read() {
    // The root itself may be a Placemark.
    if (isNamed("Placemark")) return readPlacemark();
    return readContainer(xml_.level());
  }

 private:
  // Without recursion, because folders may be nested to any depth.
  bool readContainer(uint32_t top) {
    uint32_t level = top;
    uint32_t document = isNamed("Document") ? top : 0;
    while (level >= top) {
      if (!xml_.nextChild(level)) {
        if (document == level) document = 0;
        --level;
      } else if (isNamed("Placemark")) {
        placemark_.clear();
        if (!readPlacemark()) return false;
      } else if (isNamed("coordinates")) {
        if (!readLine(false)) return false;
      } else if (isNamed("name") && document == level && notes_.collection.empty()) {
        notes_.collection = xml_.text();
      } else {
        ++level;
        if (document == 0 && isNamed("Document")) document = level;
      }
    }
    return true;
  }

  bool isNamed(std::string_view name) const { return xml_.is(name); }

  bool readPlacemark() {
    const uint32_t top = xml_.level();
    uint32_t level = top;
    uint32_t pointLevel = 0;
    times_.clear();
    while (level >= top) {
      if (!xml_.nextChild(level)) {
        if (level == pointLevel) pointLevel = 0;
        if (level == trackLevel_ && !endTrack()) return false;
        --level;
      } else if (level == top && isNamed("name")) {
        placemark_ = xml_.text();
      } else if (isNamed("coordinates")) {
        if (pointLevel == level && level == top + 1 ? !readPlace() : !readLine(true)) return false;
      } else if (xml_.localName() == "when" && trackLevel_ == level) {
        times_.push_back(isoTime(xml_.text()));
      } else if (xml_.localName() == "coord" && trackLevel_ == level) {
        if (!readCoord()) return false;
      } else {
        ++level;
        if (isNamed("Point")) pointLevel = level;
        if (xml_.name() == "gx:Track" || isNamed("Track")) beginTrack(level);
      }
    }
    return true;
  }

  // The coordinates of the placemark's own point; anything that is not a number is 0.
  bool readPlace() {
    const std::string text(xml_.text());
    if (text.empty()) return true;
    std::string_view rest(text);
    ExchangePoint point;
    const Triple triple = takeTriple(rest, point);
    if (triple == Triple::odd) ++notes_.wordsAsZero;
    if (!isOnEarth(point.longitude, point.latitude)) {
      ++notes_.badPositions;
      return true;
    }
    if (rest.find_first_not_of(kXmlBlanks) != std::string_view::npos) ++notes_.odd;
    point.name = placemark_;
    point.hasName = !placemark_.empty();
    return sink_.waypoint(point);
  }

  bool readLine(bool inPlacemark) {
    const std::string_view name = inPlacemark ? std::string_view(placemark_) : std::string_view();
    if (!sink_.beginPath(PathKind::track, name) || !sink_.beginSegment(false)) return false;
    bool wanted = true;
    xml_.textPieces([&](std::string_view piece) {
      return wanted = readCoordinates(
                 piece, notes_, [this](const ExchangePoint& point) { return sink_.point(point); });
    });
    return wanted && sink_.endPath(name);
  }

  void beginTrack(uint32_t level) {
    trackLevel_ = level;
    begun_ = false;
    coords_ = 0;
    times_.clear();
  }

  // "lon lat alt"; empty for a time without a position.
  bool readCoord() {
    std::string_view rest = xml_.text();
    const DateTime time = coords_ < times_.size() ? times_[coords_] : DateTime{};
    ++coords_;
    if (rest.empty()) return true;
    std::string triple(rest);
    std::replace_if(triple.begin(), triple.end(), isXmlBlank, ',');
    rest = triple;
    ExchangePoint point;
    switch (takeTriple(rest, point)) {
      case Triple::odd: ++notes_.odd; return true;
      case Triple::bad: ++notes_.badPositions; return true;
      case Triple::good: break;
    }
    point.utc = time;
    if (!begun_) {
      begun_ = true;
      if (!sink_.beginPath(PathKind::track, placemark_) || !sink_.beginSegment(true)) return false;
    }
    return sink_.point(point);
  }

  bool endTrack() {
    trackLevel_ = 0;
    return !begun_ || sink_.endPath(placemark_);
  }

  XmlPull& xml_;
  ExchangeSink& sink_;
  ReadingNotes& notes_;
  std::string placemark_;
  uint32_t trackLevel_ = 0;
  bool begun_ = false;
  size_t coords_ = 0;
  std::vector<DateTime> times_;
};

}  // namespace

bool readCoordinates(std::string_view text, ReadingNotes& notes,
                     const std::function<bool(const ExchangePoint&)>& take) {
  ExchangePoint point;
  for (;;) {
    const size_t first = text.find_first_not_of(kXmlBlanks);
    if (first == std::string_view::npos) return true;
    text.remove_prefix(first);
    switch (takeTriple(text, point)) {
      case Triple::odd: ++notes.odd; break;
      case Triple::bad: ++notes.badPositions; break;
      case Triple::good:
        if (!take(point)) return false;
    }
  }
}

void readKml(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes) {
  if (!KmlReader(xml, sink, notes).read()) notes.end = ReadingEnd::stopped;
}

}  // namespace vgps
