#pragma once

#include <string_view>

namespace vgps {

// res/path.kml: the document that a track is filled into.
extern const std::string_view kPathXml;
// res/kml.png: the icon of a place with a file.
extern const std::string_view kIconKml;

}  // namespace vgps
