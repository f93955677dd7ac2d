#include <cmath>

#include "formats/readers.h"
#include "geo/units.h"

// <gpx version="1.0" creator="...">
//   <wpt lat="48.1" lon="11.5"> <ele>545</ele> <name>Camp</name> <time>...</time> </wpt>
//   <rte> <name>...</name> <rtept lat="" lon=""> ... </rtept> </rte>
//   <trk> <name>...</name> <trkseg> <trkpt lat="" lon=""> ... </trkpt> </trkseg> </trk>
// </gpx>
//
// A point of GPX 1.0 has speed and course as its own, one of 1.1 in its extensions.
namespace vgps {
namespace {

constexpr std::string_view kOwnCreator = "Vexa GPS";

class GpxReader {
 public:
  GpxReader(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes)
      : xml_(xml), sink_(sink), notes_(notes) {
    // Our own 1.0 files hold kilometers per hour, those of others meters per second.
    const std::optional<std::string_view> creator = xml.attribute("creator");
    const bool own = creator && *creator == kOwnCreator;
    const std::optional<std::string_view> version = xml.attribute("version");
    inKmh_ = own && version && *version == "1.0";
  }

  bool read() {
    constexpr uint32_t kRoot = 1;
    while (xml_.nextChild(kRoot)) {
      bool go = true;
      if (xml_.is("wpt")) {
        go = readPoint([this] { return sink_.waypoint(point_); });
      } else if (xml_.is("trk")) {
        go = readPath(PathKind::track);
      } else if (xml_.is("rte")) {
        go = readPath(PathKind::route);
      }
      if (!go) return false;
    }
    return true;
  }

 private:
  bool readPath(PathKind kind) {
    const uint32_t level = xml_.level();
    pathName_.clear();
    named_ = begun_ = inSegment_ = false;
    while (xml_.nextChild(level)) {
      if (xml_.is("name") && !named_) {
        pathName_ = xml_.text();
        named_ = true;
      } else if (xml_.is("trkseg")) {
        if (!begin(kind) || !readSegment(xml_.level())) return false;
        inSegment_ = false;
      } else if (isPathPoint()) {
        if (!begin(kind)) return false;
        if (!inSegment_ && !sink_.beginSegment(false)) return false;
        inSegment_ = true;
        if (!readPoint([this] { return sink_.point(point_); })) return false;
      }
    }
    return begin(kind) && sink_.endPath(pathName_);
  }

  bool begin(PathKind kind) {
    if (begun_) return true;
    begun_ = true;
    return sink_.beginPath(kind, pathName_);
  }

  bool readSegment(uint32_t level) {
    if (!sink_.beginSegment(true)) return false;
    while (xml_.nextChild(level)) {
      if (isPathPoint() && !readPoint([this] { return sink_.point(point_); })) return false;
    }
    return true;
  }

  bool isPathPoint() const { return xml_.is("trkpt") || xml_.is("rtept"); }

  template <class Hand>
  bool readPoint(Hand hand) {
    point_ = {};
    point_.longitude = number("lon");
    point_.latitude = number("lat");
    const uint32_t level = xml_.level();
    while (xml_.nextChild(level)) readChild();
    if (!isOnEarth(point_.longitude, point_.latitude)) {
      ++notes_.badPositions;
      return true;
    }
    return hand();
  }

  // A coordinate that is missing is 0.
  double number(std::string_view name) {
    const std::optional<std::string_view> text = xml_.attribute(name);
    if (!text) return 0;
    bool isWord = false;
    const double value = exchangeNumber(*text, isWord);
    if (isWord) ++notes_.wordsAsZero;
    return value;
  }

  void readChild() {
    const std::string_view name = xml_.name();
    if (name == "ele") {
      bool isWord = false;
      const std::string_view text = xml_.text();
      const double value = exchangeNumber(text, isWord);
      if (!point_.hasAltitude && !text.empty() && std::isfinite(value)) {
        point_.altitude = value;
        point_.hasAltitude = true;
      }
    } else if (name == "name") {
      if (point_.hasName) return;
      name_ = xml_.text();
      point_.name = name_;
      point_.hasName = true;
    } else if (name == "time") {
      point_.utc = isoTime(xml_.text());
    } else if (name == "speed") {
      readValue(point_.speed, inKmh_ ? 1 / kKmhPerMps : 1);
    } else if (name == "course") {
      readValue(point_.course, 1);
    } else if (name == "extensions") {
      readExtensions(xml_.level());
    }
  }

  void readValue(std::optional<double>& into, double factor) {
    bool isWord = false;
    const std::string_view text = xml_.text();
    const double value = exchangeNumber(text, isWord) * factor;
    if (!isWord && std::isfinite(value) && !into) into = value;
  }

  // Speed and course under any prefix: programs agree on the names and on the units.
  void readExtensions(uint32_t top) {
    constexpr uint32_t kDeepest = 8;
    uint32_t level = top;
    while (level >= top) {
      if (!xml_.nextChild(level)) {
        --level;
      } else if (xml_.localName() == "speed") {
        readValue(point_.speed, 1);
      } else if (xml_.localName() == "course") {
        readValue(point_.course, 1);
      } else if (level < top + kDeepest) {
        ++level;
      }
    }
  }

  XmlPull& xml_;
  ExchangeSink& sink_;
  ReadingNotes& notes_;
  bool inKmh_ = false;
  ExchangePoint point_;
  std::string name_;
  std::string pathName_;
  bool named_ = false;
  bool begun_ = false;
  bool inSegment_ = false;
};

}  // namespace

void readGpx(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes) {
  if (!GpxReader(xml, sink, notes).read()) notes.end = ReadingEnd::stopped;
}

}  // namespace vgps
