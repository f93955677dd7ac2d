#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "formats/collection.h"
#include "formats/readers.h"
#include "formats/writers.h"
#include "fuzz/quiet_hooks.h"

// What holds of any bytes that are read as an exchange file.
namespace vgps {

// `piece` bytes at a time.
inline ByteSource piecesOf(std::string_view bytes, size_t piece) {
  return [bytes, piece](char* to, size_t size) mutable {
    const size_t count = bytes.copy(to, std::min(size, piece));
    bytes.remove_prefix(count);
    return count;
  };
}

inline void handAll(const ExchangeCollection& file, ExchangeSink& sink) {
  ExchangePoint point;
  const auto with = [&](const CollectedPoint& from) -> const ExchangePoint& {
    point.longitude = from.longitude;
    point.latitude = from.latitude;
    point.altitude = from.altitude;
    point.hasAltitude = from.hasAltitude;
    point.name = file.nameOf(from);
    point.utc = from.utc;
    return point;
  };
  for (const CollectedWaypoint& waypoint : file.waypoints) sink.waypoint(with(waypoint.point));
  for (const PathKind kind : {PathKind::route, PathKind::track}) {
    for (const CollectedPath& path : file.paths) {
      if (path.kind != kind) continue;
      sink.beginPath(path.kind, path.name);
      for (const CollectedSegment& segment : path.segments) {
        sink.beginSegment(segment.own);
        for (const CollectedPoint& from : segment.points) sink.point(with(from));
      }
      sink.endPath(path.name);
    }
  }
}

// Positions on the earth, and how many of them a track may have.
inline uint64_t checkPoints(const ExchangeCollection& file) {
  uint64_t positions = 0;
  for (const CollectedWaypoint& waypoint : file.waypoints) {
    require(isOnEarth(waypoint.point.longitude, waypoint.point.latitude));
  }
  for (const CollectedPath& path : file.paths) {
    for (const CollectedSegment& segment : path.segments) {
      for (const CollectedPoint& point : segment.points) {
        require(isOnEarth(point.longitude, point.latitude));
        if (isPosition(point.longitude, point.latitude)) ++positions;
      }
    }
  }
  return positions;
}

// The same whatever the pieces are that the bytes come in, and what is written of it is read again.
inline void checkExchange(std::string_view bytes) {
  ExchangeCollection whole;
  ExchangeCollection pieces;
  ReadingNotes notes;
  ReadingNotes notesOfPieces;
  readXmlExchange(piecesOf(bytes, bytes.size() + 1), whole, notes);
  readXmlExchange(piecesOf(bytes, 7), pieces, notesOfPieces);
  require(notes.end == notesOfPieces.end && notes.damageOffset == notesOfPieces.damageOffset);
  require(notes.end != ReadingEnd::damaged || notes.damageOffset <= 2 * bytes.size() + 2);
  require(whole.waypoints.size() == pieces.waypoints.size());
  const uint64_t points = checkPoints(whole);
  require(points == checkPoints(pieces));
  // One format a run: the writers and readers have buffers that take longer than the bytes do.
  constexpr ExchangeFormat kFormats[] = {ExchangeFormat::gpx, ExchangeFormat::kml,
                                         ExchangeFormat::geojson, ExchangeFormat::csv};
  const ExchangeFormat format = kFormats[bytes.size() % std::size(kFormats)];
  std::string text;
  const auto writer = makeWriter(
      format, {},
      [&text](std::string_view piece) {
        text += piece;
        return true;
      },
      [&text](uint64_t offset, std::string_view piece) {
        text.replace(offset, piece.size(), piece);
        return true;
      });
  handAll(whole, *writer);
  require(writer->finish() && !writer->outOfOrder());
  ExchangeCollection again;
  ReadingNotes notesAgain;
  if (format == ExchangeFormat::geojson) {
    readGeoJson(piecesOf(text, 1000), again, notesAgain);
  } else if (format == ExchangeFormat::csv) {
    readCsv(piecesOf(text, 1000), again, notesAgain);
  } else {
    readXmlExchange(piecesOf(text, 1000), again, notesAgain);
  }
  require(notesAgain.end == ReadingEnd::whole);
  if (format == ExchangeFormat::csv) return;  // there a waypoint is a point as well
  require(again.waypoints.size() == whole.waypoints.size());
  // What rounds to 0,0 or lies there is no position any more.
  require(checkPoints(again) <= points);
}

}  // namespace vgps
