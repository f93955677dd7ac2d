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

// Exports tracks and waypoints for other programs. Every file is written to a temporary file first,
// so that an existing file stays until the new one is complete.
namespace vgps {

enum class Answer { yes, no, cancel };

// How exports and imports talk to the user and the system: the window, the command line, and tests
// each provide their own. By default, every question is answered with no, and nothing is chosen.
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
  // Opens the file with the program that the system associates with it.
  virtual void openDocument(const std::string& /*path*/) {}
  // The amount read or written so far and the total (bytes or tracks; 0: unknown). Returns false to
  // stop.
  virtual bool progress(uint64_t /*done*/, uint64_t /*total*/) { return true; }
};

enum class ExportResult {
  done,
  refused,     // the library stores its tracks as files; the user has been told
  notRead,     // a track of the library could not be read; the file was not written
  notWritten,  // a disk error; nothing has changed
  cancelled,
};

// Where exports put their files, and the time they write to them.
struct ExportPlace {
  const Clock& clock = systemClock();
  ExclusiveOpener open = openExclusive;
  std::string temporaryFolder = ".";  // for the parts of a KMZ archive
};

// Exports GPX 1.0; asks once whether as a track or as a route. Unlike the others, GPX files are not
// opened afterwards.
ExportResult ExportWaypointGpx(const Waypoint& waypoint, const std::string& fileName,
                               const ExportPlace& place = {});
ExportResult ExportTrackGpx(const Track& track, const std::string& fileName, ExchangeHooks& hooks,
                            const ExportPlace& place = {});
ExportResult ExportAllGpx(const std::string& fileName, const WaypointLibrary& waypoints,
                          TrackLibrary& tracks, ExchangeHooks& hooks,
                          const ExportPlace& place = {});
// The backup of the current recording: always as a track, without asking.
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

// Exports every track of the library as a separate track file to the folder "VGPS Tracks" of
// `documentsFolder`, after asking the user. `written` counts them.
ExportResult ExportAllTracksAsFiles(const std::string& documentsFolder, TrackLibrary& tracks,
                                    ExchangeHooks& hooks, uint32_t& written,
                                    const ExportPlace& place = {});

}  // namespace vgps
