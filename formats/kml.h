#pragma once

#include <string>
#include <string_view>

#include "formats/xml_text.h"
#include "track/track.h"

// KML 2.1 and LOC as this program writes them.
namespace vgps {

inline constexpr std::string_view kKmlNamespace = "http://earth.google.com/kml/2.1";

// "jpg" of "a.b/photo.jpg": what stands behind the last "." of the file's own name; "bin" without.
std::string attachmentExtension(std::string_view path);

// The document of one track, whole: the template of res/path.kml filled in. With references, each
// attachment is a place of its own with a picture "ref1.jpg" beside the document.
std::string trackKml(const Track& track, bool withReferences);

// A Placemark of the document of everything.
void writePlaceKml(XmlText& xml, const Waypoint& waypoint, std::string_view description,
                   int decimals, int altitudeDecimals);

// Point by point: the coordinates stand on one line, a blank behind each.
class LineKml {
 public:
  LineKml(XmlText& xml, std::string_view name, std::string_view description);
  void point(double longitude, double latitude, double altitude);
  void end();

 private:
  XmlText& xml_;
  bool any_ = false;
};

void writeLocWaypoint(XmlText& xml, const Waypoint& waypoint, std::string_view id);
void openLoc(XmlText& xml);

}  // namespace vgps
