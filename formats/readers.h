#pragma once

#include "formats/exchange.h"

// One reader per format, from the bytes of a file to a sink, with memory for one point at a time.
// XML formats are recognized by their root element.
namespace vgps {

// GPX, KML, or LOC. Other root elements are reported in the notes, and nothing is passed to the
// sink.
void readXmlExchange(ByteSource source, ExchangeSink& sink, ReadingNotes& notes);

// Call this after the root's tag was read.
void readGpx(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes);
void readKml(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes);
void readLoc(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes);

// RFC 7946: each Point is a waypoint, each LineString or MultiLineString a track, with the times of
// its property "coordTimes". The points of one feature are kept in memory together.
void readGeoJson(ByteSource source, ExchangeSink& sink, ReadingNotes& notes);

// Lines of values after a header line that names the columns:
//
//   lat,lon,ele,time,speed,course,name       degrees, meters, ISO 8601, m/s, degrees
//
// in any order; only lat and lon are required. An empty line starts the next track.
void readCsv(ByteSource source, ExchangeSink& sink, ReadingNotes& notes);

// Parses KML coordinates: "lon,lat,alt lon,lat,alt". Returns false if `take` stops.
bool readCoordinates(std::string_view text, ReadingNotes& notes,
                     const std::function<bool(const ExchangePoint&)>& take);

}  // namespace vgps
