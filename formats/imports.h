#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "formats/exchange.h"
#include "formats/exports.h"

// Waypoints and tracks of other programs into the libraries.
namespace vgps {

struct ImportOptions {
  // Each further segment becomes a track of its own, "name (2)", and times, speeds and courses are
  // kept. Otherwise the first segment of each track counts, with positions, heights and names.
  bool complete = false;
  int32_t speedUnit = 0;  // of the display: SpeedUnit
  const Clock& clock = systemClock();
};

struct ImportTarget {
  WaypointLibrary& waypoints;
  TrackLibrary& tracks;
};

struct ImportResult {
  ReadingEnd end = ReadingEnd::whole;
  uint32_t waypoints = 0;  // that are in the libraries now
  uint32_t tracks = 0;
  uint64_t points = 0;  // of those tracks
  // What the libraries said of the change.
  LibraryResult saved = LibraryResult::done;
  // One for each kind of thing that was found and is not there now, and for damage.
  std::vector<std::string> lines;
  // What was told to the person; empty when nothing was.
  std::string message;
};

// Asks for the waypoints, then for the tracks of a GPX file: all of them or chosen ones.
ImportResult ImportGpx(const std::string& fileName, const ImportTarget& target,
                       ExchangeHooks& hooks, const ImportOptions& options = {});

// KML, KMZ, LOC or a track file. As waypoints: the points of placemarks, chosen from a list. As
// tracks: every list of coordinates.
ImportResult ImportKml(const std::string& fileName, bool asWaypoints, const ImportTarget& target,
                       ExchangeHooks& hooks, const ImportOptions& options = {});

// Whichever of the two the root element asks for, for files that are dropped on the window: of a
// KML file its tracks, or its waypoints where it has no others.
ImportResult ImportFile(const std::string& fileName, const ImportTarget& target,
                        ExchangeHooks& hooks, const ImportOptions& options = {});

}  // namespace vgps
