#pragma once

#include <string>
#include <string_view>

#include "formats/xml_text.h"
#include "track/track.h"

// KML 2.1 and LOC as this program writes them.
namespace vgps {

inline constexpr std::string_view kKmlNamespace = "http://earth.google.com/kml/2.1";

// "jpg" for "a.b/photo.jpg": the part after the last "." of the file name; "bin" if there is none.
std::string attachmentExtension(std::string_view path);

// The complete document of one track: the template res/path.kml with its values. With references,
// each attachment becomes a placemark of its own with an image "ref1.jpg" next to the document.
std::string trackKml(const Track& track, bool withReferences);

// A Placemark in the document with everything.
void writePlaceKml(XmlText& xml, const Waypoint& waypoint, std::string_view description,
                   int decimals, int altitudeDecimals);

// Written point by point: all coordinates are on one line, each followed by a space.
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
