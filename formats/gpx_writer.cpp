#include "formats/gpx_writer.h"

#include <algorithm>

#include "base/text.h"
#include "formats/gpx.h"
#include "geo/units.h"
#include "track/track.h"

namespace vgps {
namespace {

constexpr std::string_view kGpx11Namespace = "http://www.topografix.com/GPX/1/1";
constexpr std::string_view kGpx11Schema =
    "http://www.topografix.com/GPX/1/1 http://www.topografix.com/GPX/1/1/gpx.xsd";
constexpr std::string_view kExtensionNamespace = "urn:vexa-gps:point:1";

// XML 1.0 has no control characters but tab and line ends, not even escaped.
std::string cleanText(std::string_view text) {
  std::string clean = validUtf8(text);
  for (char& c : clean) {
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  }
  return clean;
}

bool isPlainAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c != '&'; });
}

// What both versions have in common.
class GpxWriter : public ExchangeWriter {
 public:
  bool finish() override {
    xml_.close();
    return xml_.finish();
  }

 protected:
  explicit GpxWriter(XmlText xml) : xml_(std::move(xml)) {}

  // `name`: as it came with the end of the path; it is lost if the path had none at its start.
  bool closePath(bool segmentIsOpen, std::string_view name) {
    if (segmentIsOpen && !isRoute_) xml_.close();
    if (!named_ && !name.empty()) ++losses_.pathNames;
    xml_.close();
    return xml_.good();
  }

  XmlText xml_;
  bool isRoute_ = false;
  bool named_ = false;
};

class Gpx11Writer : public GpxWriter {
 public:
  explicit Gpx11Writer(TextSink sink)
      : GpxWriter(XmlText(std::move(sink), 0, XmlText::Texts::inTags)) {
    xml_.declaration();
    xml_.beginTag("gpx");
    xml_.attribute("version", "1.1");
    xml_.attribute("creator", kGpxCreator);
    xml_.attribute("xmlns:xsi", kSchemaInstance);
    xml_.attribute("xmlns:vexa", kExtensionNamespace);
    xml_.attribute("xmlns", kGpx11Namespace);
    xml_.attribute("xsi:schemaLocation", kGpx11Schema);
    xml_.endTag();
  }

  bool waypoint(const ExchangePoint& point) override {
    if (!follows(Kind::waypoint)) return false;
    writePoint("wpt", point);
    return xml_.good();
  }

  bool beginPath(PathKind kind, std::string_view name) override {
    isRoute_ = kind == PathKind::route;
    if (!follows(isRoute_ ? Kind::route : Kind::track)) return false;
    xml_.open(isRoute_ ? "rte" : "trk");
    named_ = !name.empty();
    if (named_) textElement("name", name);
    inSegment_ = false;
    return xml_.good();
  }

  bool beginSegment(bool) override {
    if (inSegment_ && isRoute_) ++losses_.segments;
    if (inSegment_ && !isRoute_) xml_.close();
    inSegment_ = true;
    if (!isRoute_) xml_.open("trkseg");
    return xml_.good();
  }

  bool point(const ExchangePoint& point) override {
    if (!isPosition(point.longitude, point.latitude)) {
      ++losses_.noPosition;
      return true;
    }
    writePoint(isRoute_ ? "rtept" : "trkpt", point);
    return xml_.good();
  }

  bool endPath(std::string_view name) override { return closePath(inSegment_, name); }

 private:
  enum class Kind { waypoint, route, track };

  bool follows(Kind kind) {
    if (kind < last_) outOfOrder_ = true;
    last_ = kind;
    return !outOfOrder_;
  }

  void textElement(std::string_view name, std::string_view text) {
    if (isPlainAscii(text)) {
      xml_.element(name, text);
    } else {
      xml_.elementWithPlainText(name, cleanText(text));
    }
  }

  // Seven decimals are a centimetre; a file's own digits are not many more.
  void writePoint(std::string_view name, const ExchangePoint& point) {
    constexpr int kDecimals = 7;
    xml_.beginTag(name);
    xml_.attribute("lat", point.latitude, kDecimals);
    xml_.attribute("lon", point.longitude, kDecimals);
    xml_.endTag();
    if (point.hasAltitude) xml_.element("ele", point.altitude, 3);
    if (point.utc.year != 0) {
      char text[32];
      xml_.elementAsItIs("time", {text, static_cast<size_t>(writeIsoTime(text, point.utc) - text)});
    }
    if (!point.name.empty()) textElement("name", point.name);
    if (point.speed || point.course) {
      xml_.open("extensions");
      if (point.speed) xml_.element("vexa:speed", *point.speed, 3);
      if (point.course) xml_.element("vexa:course", *point.course, 2);
      xml_.close();
    }
    xml_.close();
  }

  Kind last_ = Kind::waypoint;
  bool inSegment_ = false;
};

class Gpx10Writer : public GpxWriter {
 public:
  explicit Gpx10Writer(TextSink sink) : GpxWriter(XmlText(std::move(sink))) {
    xml_.declaration();
    writeGpxRoot(xml_);
  }

  bool waypoint(const ExchangePoint& point) override {
    writeGpxPoint(xml_, gpxPoint(point), GpxPointKind::waypoint);
    return xml_.good();
  }

  bool beginPath(PathKind kind, std::string_view name) override {
    isRoute_ = kind == PathKind::route;
    named_ = !name.empty();
    segments_ = number_ = 0;
    xml_.open(isRoute_ ? "rte" : "trk");
    xml_.element("name", name);
    xml_.element("number", ++paths_);
    if (!isRoute_) xml_.open("trkseg");
    return xml_.good();
  }

  bool beginSegment(bool) override {
    if (++segments_ > 1) ++losses_.segments;
    return true;
  }

  bool point(const ExchangePoint& point) override {
    ++number_;
    if (!isPosition(point.longitude, point.latitude)) {
      ++losses_.noPosition;
      return true;
    }
    GpxPoint written = gpxPoint(point);
    if (point.name.empty()) {
      pointName_ = "p #" + std::to_string(number_);
      written.name = pointName_;
    }
    writeGpxPoint(xml_, written, isRoute_ ? GpxPointKind::routePoint : GpxPointKind::trackPoint);
    return xml_.good();
  }

  bool endPath(std::string_view name) override { return closePath(true, name); }

 private:
  static GpxPoint gpxPoint(const ExchangePoint& point) {
    return {.name = point.name,
            .longitude = point.longitude,
            .latitude = point.latitude,
            .altitude = point.altitude,
            .time = point.utc,
            .course = static_cast<float>(point.course.value_or(0)),
            .speed = static_cast<float>(point.speed.value_or(0) * kKmhPerMps)};
  }

  uint32_t paths_ = 0;
  uint64_t segments_ = 0;
  uint64_t number_ = 0;
  std::string pointName_;
};

}  // namespace

std::unique_ptr<ExchangeWriter> makeGpx11Writer(TextSink sink) {
  return std::make_unique<Gpx11Writer>(std::move(sink));
}

std::unique_ptr<ExchangeWriter> makeGpx10Writer(TextSink sink) {
  return std::make_unique<Gpx10Writer>(std::move(sink));
}

}  // namespace vgps
