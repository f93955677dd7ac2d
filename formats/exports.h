#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "library/track_library.h"
#include "library/waypoint_library.h"
#include "platform/clock.h"
#include "platform/exclusive_file.h"
#include "track/track.h"

// Tracks and waypoints for other programs. Every file is written beside its place and then put
// there: what was there before stays until the new one is whole.
namespace vgps {

enum class Answer { yes, no, cancel };

// How exports and imports speak to a person and use the system: a window, a terminal and a test
// each fill in their own. By default every question is answered with no, and nothing is chosen.
class ExchangeHooks {
 public:
  virtual ~ExchangeHooks() = default;
  virtual Answer ask(const std::string& /*question*/, bool /*withCancel*/) { return Answer::no; }
  // Whether to import all tracks; the person may change what is kept of them.
  virtual Answer askToImport(const std::string& question, bool& /*complete*/) {
    return ask(question, false);
  }
  // The places of the chosen names, ascending; `column` is the title of the list.
  virtual std::vector<size_t> choose(std::string_view /*caption*/, std::string_view /*column*/,
                                     const std::vector<std::string>& /*names*/) {
    return {};
  }
  virtual void tell(const std::string& /*message*/) {}
  // With the program that the system has for it.
  virtual void openDocument(const std::string& /*path*/) {}
  // What was read or written so far, of how much (bytes, tracks; 0 unknown). False: stop.
  virtual bool progress(uint64_t /*done*/, uint64_t /*total*/) { return true; }
};

enum class ExportResult {
  done,
  refused,     // the library keeps its tracks as files; that was told
  notRead,     // a track of the library; the file was not written
  notWritten,  // the disk did not take it: nothing has changed
  cancelled,
};

// Where exports put what they write, and the time they write into it.
struct ExportPlace {
  const Clock& clock = systemClock();
  ExclusiveOpener open = openExclusive;
  std::string temporaryFolder = ".";  // of the parts of a KMZ archive
};

// GPX 1.0. Whether as a track or as a route is asked, once. GPX files are not opened afterwards,
// the others are.
ExportResult ExportWaypointGpx(const Waypoint& waypoint, const std::string& fileName,
                               const ExportPlace& place = {});
ExportResult ExportTrackGpx(const Track& track, const std::string& fileName, ExchangeHooks& hooks,
                            const ExportPlace& place = {});
ExportResult ExportAllGpx(const std::string& fileName, const WaypointLibrary& waypoints,
                          TrackLibrary& tracks, ExchangeHooks& hooks,
                          const ExportPlace& place = {});
// The track's backup while it is recorded: as a track, without a question.
ExportResult BackupTrackGpx(const Track& track, const std::string& fileName,
                            const ExportPlace& place = {});

ExportResult ExportTrackKml(const Track& track, const std::string& fileName, bool withReferences,
                            ExchangeHooks& hooks, const ExportPlace& place = {});
ExportResult ExportTrackKmz(const Track& track, const std::string& archiveName,
                            ExchangeHooks& hooks, const ExportPlace& place = {});
ExportResult ExportAllKml(const std::string& fileName, const WaypointLibrary& waypoints,
                          TrackLibrary& tracks, ExchangeHooks& hooks,
                          const ExportPlace& place = {});
ExportResult ExportWaypointKml(const Waypoint& waypoint, const std::string& fileName,
                               ExchangeHooks& hooks, const ExportPlace& place = {});
ExportResult ExportWaypointLoc(const Waypoint& waypoint, const std::string& fileName,
                               ExchangeHooks& hooks, const ExportPlace& place = {});
ExportResult ExportAllLoc(const std::string& fileName, const WaypointLibrary& waypoints,
                          ExchangeHooks& hooks, const ExportPlace& place = {});

// Every track of the library as a track file of its own, in the folder "VGPS Tracks" of
// `documentsFolder`. Asked first. `written` counts them.
ExportResult ExportAllTracksAsFiles(const std::string& documentsFolder, TrackLibrary& tracks,
                                    ExchangeHooks& hooks, uint32_t& written,
                                    const ExportPlace& place = {});

}  // namespace vgps
