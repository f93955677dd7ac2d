#pragma once

#include <string_view>

namespace vgps {

// res/path.kml: the template document for a track.
extern const std::string_view kPathXml;
// res/kml.png: the icon of a placemark with a file.
extern const std::string_view kIconKml;

}  // namespace vgps
