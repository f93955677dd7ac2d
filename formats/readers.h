#pragma once

#include "formats/exchange.h"

// One reader for each format: from the bytes of a file to a sink, with memory for one point at a
// time. XML formats are told apart by their root element.
namespace vgps {

// GPX, KML or LOC. Other roots are named in the notes, and nothing is handed over.
void readXmlExchange(ByteSource source, ExchangeSink& sink, ReadingNotes& notes);

// Behind the root's tag.
void readGpx(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes);
void readKml(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes);
void readLoc(XmlPull& xml, ExchangeSink& sink, ReadingNotes& notes);

// RFC 7946: each Point is a waypoint, each LineString or MultiLineString a track, with the times of
// its property "coordTimes". The points of one feature are held together.
void readGeoJson(ByteSource source, ExchangeSink& sink, ReadingNotes& notes);

// Lines of values under a header that names the columns:
//
//   lat,lon,ele,time,speed,course,name       degrees, meters, ISO 8601, m/s, degrees
//
// in any order, lat and lon at least. An empty line begins the next track.
void readCsv(ByteSource source, ExchangeSink& sink, ReadingNotes& notes);

// A text of KML coordinates: "lon,lat,alt lon,lat,alt". False when `take` wants no more.
bool readCoordinates(std::string_view text, ReadingNotes& notes,
                     const std::function<bool(const ExchangePoint&)>& take);

}  // namespace vgps
