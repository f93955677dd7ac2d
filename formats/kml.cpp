#include "formats/kml.h"

#include "base/number.h"
#include "formats/resources.h"
#include "xml/document.h"

namespace vgps {
namespace {

constexpr int kDecimals = 6;

void appendTriple(std::string& text, const TrackPoint& point) {
  char triple[3 * kLongestFixedText + 2];
  char* at = writeFixed(triple, point.longitude, kDecimals);
  *at++ = ',';
  at = writeFixed(at, point.latitude, kDecimals);
  *at++ = ',';
  at = writeFixed(at, point.altitude, kDecimals);
  text.append(triple, static_cast<size_t>(at - triple));
}

std::string coordinateLines(const Track& track) {
  std::string text;
  for (const TrackPoint& point : track.points) {
    if (!isPosition(point.longitude, point.latitude)) continue;
    appendTriple(text, point);
    text += "\r\n";
  }
  return text;
}

void addReference(XmlElement document, const Track& track, size_t index) {
  const TrackAttachment& attachment = track.attachments[index];
  if (attachment.point >= track.points.size()) return;
  const TrackPoint& point = track.points[attachment.point];
  if (!isPosition(point.longitude, point.latitude)) return;
  const std::string number = std::to_string(index + 1);
  const std::string name = "Reference " + number;
  std::string coordinates;
  appendTriple(coordinates, point);
  XmlElement place = document.AddElement("Placemark");
  place.AddElement("visibility").SetText("1");
  place.AddElement("name").SetText(name);
  place.AddElement("Point").AddElement("coordinates").SetText(coordinates);
  place.AddElement("styleUrl").SetText("sty2");
  place.AddElement("description")
      .AddCData(name + "<br><img src=\"ref" + number + "." + attachmentExtension(attachment.path) +
                "\" >");
}

}  // namespace

std::string attachmentExtension(std::string_view path) {
  const std::string_view name = path.substr(path.find_last_of("/\\") + 1);
  const size_t point = name.rfind('.');
  return std::string(point == std::string_view::npos ? "bin" : name.substr(point + 1));
}

std::string trackKml(const Track& track, bool withReferences) {
  XmlDocument file;
  file.Load(kPathXml, XmlLoadMode::text);
  XmlElement document = file.GetRootElement().FindElement("Document", true);
  XmlElement placemark = document.FindElement("Placemark", true);
  placemark.AddElement("altitudeMode").SetText("absolute");
  placemark.FindElement("LineString", true)
      .FindElement("coordinates", true)
      .SetText(coordinateLines(track));
  for (size_t i = 0; withReferences && i < track.attachments.size(); ++i) {
    addReference(document, track, i);
  }
  document.FindElement("description", true).SetText(track.name);
  std::string text;
  file.saveText(text);
  return text;
}

void writePlaceKml(XmlText& xml, const Waypoint& waypoint, std::string_view description,
                   int decimals, int altitudeDecimals) {
  xml.open("Placemark");
  xml.element("name", waypoint.name);
  xml.element("description", description);
  xml.open("Point");
  xml.open("coordinates");
  xml.piece(waypoint.x, decimals), xml.piece(","), xml.piece(waypoint.y, decimals), xml.piece(",");
  xml.piece(waypoint.z, altitudeDecimals), xml.endText();
  xml.close(), xml.close(), xml.close();
}

LineKml::LineKml(XmlText& xml, std::string_view name, std::string_view description) : xml_(xml) {
  xml.open("Placemark");
  xml.element("name", name);
  xml.element("description", description);
  xml.open("LineString"), xml.open("coordinates");
}

void LineKml::point(double longitude, double latitude, double altitude) {
  any_ = true;
  xml_.piece(longitude, 7), xml_.piece(","), xml_.piece(latitude, 7), xml_.piece(",");
  xml_.piece(altitude, 3), xml_.piece(" ");
}

void LineKml::end() {
  if (any_) xml_.endText();
  xml_.close(), xml_.close(), xml_.close();
}

void openLoc(XmlText& xml) {
  xml.beginTag("loc");
  xml.attribute("version", "1.0"), xml.attribute("src", "V-GPS");
  xml.endTag();
}

void writeLocWaypoint(XmlText& xml, const Waypoint& waypoint, std::string_view id) {
  xml.open("waypoint");
  xml.beginTag("name"), xml.attribute("id", id), xml.endTag(), xml.close();
  xml.beginTag("coord");
  xml.attribute("lat", waypoint.y, kDecimals), xml.attribute("lon", waypoint.x, kDecimals);
  xml.endTag(), xml.close();
  xml.element("type", "Geocache");
  xml.close();
}

}  // namespace vgps
