#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/date_time.h"
#include "formats/xml_text.h"
#include "track/track.h"
#include "xml/document.h"

// GPX 1.0 as this program writes it.
//
//   <trkpt lat="48.117300" lon="11.516667">      name in front of time, and every value of every
//     <ele>545.000000</ele>                      point, zeroes too: those who read these files
//     <name>p #1</name>                          know them so, whatever the schema says
//     <time>2010-07-05T09:03:04Z</time>
//     <speed>41.480000</speed>                   km/h
//     <course>84.400002</course>                 degrees
//   </trkpt>
namespace vgps {

inline constexpr std::string_view kGpxCreator = "Vexa GPS";
inline constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";
inline constexpr std::string_view kGpx10Namespace = "http://www.topografix.com/GPX/1/0";
inline constexpr std::string_view kGpx10Schema =
    "http://www.topografix.com/GPX/1/0 http://www.topografix.com/GPX/1/0/gpx.xsd";

enum class GpxPointKind { waypoint = 0, routePoint = 1, trackPoint = 2 };

struct GpxPoint {
  std::string_view name;
  double longitude = 0;  // degrees
  double latitude = 0;
  double altitude = 0;  // meters
  DateTime time{};      // UTC
  float course = 0;     // degrees
  float speed = 0;      // km/h
};

// A waypoint has no time, course or speed: they are zero.
GpxPoint gpxPointOf(const Waypoint& waypoint);
// `name` is put together in `nameRoom`. A point without a UTC time has its local one, moved by the
// offset from UTC.
GpxPoint gpxPointOf(const TrackPoint& point, size_t number, int32_t utcOffsetMinutes,
                    std::string& nameRoom);

// As text, at the depth that `xml` is at.
void writeGpxRoot(XmlText& xml);
void writeGpxPoint(XmlText& xml, const GpxPoint& point, GpxPointKind kind);
// Points without a position are left out, and numbered all the same.
void writeGpxTrack(XmlText& xml, const Track& track, uint32_t number, bool asTrack,
                   int32_t utcOffsetMinutes);

// The same as documents and elements. The document is bound to the file; the elements are not
// placed yet.
XmlDocument NewGpxDocument(std::string_view fileName);
XmlElement BuildGpxPoint(XmlDocument& document, const GpxPoint& point, GpxPointKind kind);
XmlElement BuildGpxTrack(XmlDocument& document, const Track& track, uint32_t number, bool asTrack,
                         int32_t utcOffsetMinutes);

}  // namespace vgps
