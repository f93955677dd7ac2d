#include "formats/gpx.h"

#include "formats/exchange.h"
#include "platform/clock.h"

namespace vgps {
namespace {

constexpr std::string_view kPointNames[] = {"wpt", "rtept", "trkpt"};

// Returns what `write` writes as an element.
template <class Write>
XmlElement elementFrom(XmlDocument& document, Write write) {
  std::string text;
  XmlText xml([&](std::string_view piece) {
    text += piece;
    return true;
  });
  write(xml);
  xml.finish();
  return document.createElement(text);
}

}  // namespace

GpxPoint gpxPointOf(const Waypoint& waypoint) {
  return {.name = waypoint.name,
          .longitude = waypoint.x,
          .latitude = waypoint.y,
          .altitude = waypoint.z,
          .time = {}};
}

GpxPoint gpxPointOf(const TrackPoint& point, size_t number, int32_t utcOffsetMinutes,
                    std::string& nameRoom) {
  nameRoom = "p #" + std::to_string(number);
  const bool hasUtc = point.utcTime.year != 0;
  return {.name = nameRoom,
          .longitude = point.longitude,
          .latitude = point.latitude,
          .altitude = point.altitude,
          .time = hasUtc ? point.utcTime : utcFromLocal(point.localTime, utcOffsetMinutes),
          .course = static_cast<float>(point.course),
          .speed = static_cast<float>(point.speedKmh)};
}

void writeGpxRoot(XmlText& xml) {
  xml.beginTag("gpx");
  xml.attribute("version", "1.0");
  xml.attribute("creator", kGpxCreator);
  xml.attribute("xmlns:xsi", kSchemaInstance);
  xml.attribute("xmlns", kGpx10Namespace);
  xml.attribute("xsi:schemaLocation", kGpx10Schema);
  xml.endTag();
}

void writeGpxPoint(XmlText& xml, const GpxPoint& point, GpxPointKind kind) {
  constexpr int kDecimals = 6;
  xml.beginTag(kPointNames[static_cast<size_t>(kind)]);
  xml.attribute("lat", point.latitude, kDecimals);
  xml.attribute("lon", point.longitude, kDecimals);
  xml.endTag();
  xml.element("ele", point.altitude, kDecimals);
  xml.element("name", point.name);
  DateTime time = point.time;
  time.millisecond = 0;
  char text[32];
  xml.elementAsItIs("time", {text, static_cast<size_t>(writeIsoTime(text, time) - text)});
  xml.element("speed", double{point.speed}, kDecimals);
  xml.element("course", double{point.course}, kDecimals);
  xml.close();
}

void writeGpxTrack(XmlText& xml, const Track& track, uint32_t number, bool asTrack,
                   int32_t utcOffsetMinutes) {
  xml.open(asTrack ? "trk" : "rte");
  xml.element("name", track.name);
  xml.element("number", number);
  if (asTrack) xml.open("trkseg");
  std::string name;
  size_t index = 0;
  for (const TrackPoint& point : track.points) {
    ++index;
    if (!isPosition(point.longitude, point.latitude)) continue;
    writeGpxPoint(xml, gpxPointOf(point, index, utcOffsetMinutes, name),
                  asTrack ? GpxPointKind::trackPoint : GpxPointKind::routePoint);
  }
  if (asTrack) xml.close();
  xml.close();
}

XmlDocument NewGpxDocument(std::string_view fileName) {
  XmlDocument document;
  document.SetRootElement(elementFrom(document, [](XmlText& xml) {
    writeGpxRoot(xml);
    xml.close();
  }));
  document.setFileName(fileName);
  return document;
}

XmlElement BuildGpxPoint(XmlDocument& document, const GpxPoint& point, GpxPointKind kind) {
  return elementFrom(document, [&](XmlText& xml) { writeGpxPoint(xml, point, kind); });
}

XmlElement BuildGpxTrack(XmlDocument& document, const Track& track, uint32_t number, bool asTrack,
                         int32_t utcOffsetMinutes) {
  return elementFrom(document, [&](XmlText& xml) {
    writeGpxTrack(xml, track, number, asTrack, utcOffsetMinutes);
  });
}

}  // namespace vgps
