#include "formats/kml.h"
#include "formats/writers.h"

namespace vgps {
namespace {

// Places and lines as the document of everything has them, with the namespace that other programs
// look for, and with names as they read them. A line holds no times.
class KmlWriter : public ExchangeWriter {
 public:
  explicit KmlWriter(TextSink sink) : xml_(std::move(sink), 0, XmlText::Texts::inTags) {
    xml_.declaration();
    xml_.beginTag("kml"), xml_.attribute("xmlns", kKmlNamespace), xml_.endTag();
    xml_.open("Document");
  }

  bool waypoint(const ExchangePoint& point) override {
    count(point);
    const Waypoint place{std::string(point.name), point.longitude, point.latitude, point.altitude};
    writePlaceKml(xml_, place, "VGPS Waypoint", 7, 3);
    return xml_.good();
  }

  bool beginPath(PathKind kind, std::string_view name) override {
    if (kind == PathKind::route) ++losses_.routes;
    named_ = !name.empty();
    segments_ = 0;
    line_.emplace(xml_, name, "VGPS Track");
    return xml_.good();
  }

  bool beginSegment(bool) override {
    if (++segments_ > 1) ++losses_.segments;
    return true;
  }

  bool point(const ExchangePoint& point) override {
    if (!isPosition(point.longitude, point.latitude)) {
      ++losses_.noPosition;
      return true;
    }
    count(point);
    if (!point.name.empty()) ++losses_.pointNames;
    line_->point(point.longitude, point.latitude, point.altitude);
    return xml_.good();
  }

  bool endPath(std::string_view name) override {
    if (!named_ && !name.empty()) ++losses_.pathNames;
    line_->end();
    line_.reset();
    return xml_.good();
  }

  bool finish() override {
    xml_.close(), xml_.close();
    return xml_.finish();
  }

 private:
  void count(const ExchangePoint& point) {
    if (point.utc.year != 0) ++losses_.times;
    if (point.speed) ++losses_.speeds;
    if (point.course) ++losses_.courses;
  }

  XmlText xml_;
  std::optional<LineKml> line_;
  bool named_ = false;
  uint64_t segments_ = 0;
};

// Waypoints only.
class LocWriter : public ExchangeWriter {
 public:
  explicit LocWriter(TextSink sink) : xml_(std::move(sink)) {
    xml_.declaration();
    openLoc(xml_);
  }

  bool waypoint(const ExchangePoint& point) override {
    if (point.hasAltitude) ++losses_.altitudes;
    if (point.utc.year != 0) ++losses_.times;
    if (point.speed) ++losses_.speeds;
    if (point.course) ++losses_.courses;
    ++number_;
    const std::string id = point.name.empty() ? "WP " + std::to_string(number_) : std::string();
    writeLocWaypoint(xml_, {{}, point.longitude, point.latitude},
                     id.empty() ? point.name : std::string_view(id));
    return xml_.good();
  }

  bool beginPath(PathKind, std::string_view) override {
    ++losses_.paths;
    return true;
  }
  bool point(const ExchangePoint&) override {
    ++losses_.points;
    return true;
  }

  bool finish() override {
    xml_.close();
    return xml_.finish();
  }

 private:
  XmlText xml_;
  uint64_t number_ = 0;
};

}  // namespace

std::unique_ptr<ExchangeWriter> makeKmlWriter(TextSink sink) {
  return std::make_unique<KmlWriter>(std::move(sink));
}

std::unique_ptr<ExchangeWriter> makeLocWriter(TextSink sink) {
  return std::make_unique<LocWriter>(std::move(sink));
}

}  // namespace vgps
