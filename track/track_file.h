#pragma once

#include <cstdint>
#include <string>

#include "base/date_time.h"
#include "platform/exclusive_file.h"
#include "track/options.h"
#include "track/track.h"
#include "xml/document.h"

// Tracks in files of their own, stored in a folder. The root element is "t", without a name.
namespace vgps {

enum class TrackSaving {
  saved,
  noFreeName,  // every possible name is taken; nothing was written
  notWritten,  // a disk error; nothing has changed
};

// Saves the track under an unused name, and names it after the time `local` if it has no name.
// Removes the attachments that were written from `track`.
TrackSaving saveTrackFile(Track& track, const std::string& folder, const RecordingOptions& options,
                          const DateTime& local, const ExclusiveOpener& open = openExclusive);

// The contents of a track file.
std::string trackFileText(const Track& track, const RecordingOptions& options);

// Writes the track to that path, replacing what is there. Returns false, with nothing changed, if
// the disk did not accept it.
bool writeTrackFile(const Track& track, const std::string& path, const RecordingOptions& options,
                    const ExclusiveOpener& open = openExclusive);

// Saves a track element that came from another program.
TrackSaving importTrackFile(XmlElement element, const std::string& folder,
                            const ExclusiveOpener& open = openExclusive);

enum class TrackLoading {
  whole,
  damaged,  // only the readable points were loaded
  notATrack,
  noFile,
  unreadable,
};

// Replaces the track by the one in the file, named after the file if it has no name. Leaves it
// unchanged unless the result is `whole` or `damaged`. Sets `foreign` if the file contains
// attributes or elements of other programs; if `foreign` is null, they count as damage.
TrackLoading loadTrackFile(const std::string& path, int32_t speedUnit, Track& track,
                           bool* foreign = nullptr);

}  // namespace vgps
