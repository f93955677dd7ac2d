#include "formats/readers.h"

// <loc version="1.0" src="...">
//   <waypoint> <name id="GC1">The name</name> <coord lat="48.1" lon="11.5"/> ... </waypoint>
// </loc>
namespace vgps {
namespace {

double coordinate(XmlPull& xml, std::string_view name, ReadingNotes& notes) {
  bool isWord = false;
  const double value = exchangeNumber(xml.attribute(name).value_or("0"), isWord);
  if (isWord) ++notes.wordsAsZero;
  return value;
}

bool readWaypoint(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes) {
  ExchangePoint point;
  std::string id;
  std::string text;
  bool placed = false;
  const uint32_t level = xml.level();
  while (xml.nextChild(level)) {
    if (xml.is("name")) {
      id = xml.attribute("id").value_or("");
      text = xml.text();
    } else if (xml.is("coord")) {
      point.longitude = coordinate(xml, "lon", notes);
      point.latitude = coordinate(xml, "lat", notes);
      placed = true;
    }
  }
  if (!placed || !isOnEarth(point.longitude, point.latitude)) {
    ++notes.badPositions;
    return true;
  }
  // Geocachers identify places by the id, and this program writes it.
  point.name = id.empty() ? text : id;
  point.hasName = !point.name.empty();
  return sink.waypoint(point);
}

}  // namespace

void readLoc(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes) {
  constexpr uint32_t kRoot = 1;
  while (xml.nextChild(kRoot)) {
    if (!xml.is("waypoint") || readWaypoint(xml, sink, notes)) continue;
    notes.end = ReadingEnd::stopped;
    return;
  }
}

}  // namespace vgps
