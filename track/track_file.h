#pragma once

#include <cstdint>
#include <string>

#include "base/date_time.h"
#include "platform/exclusive_file.h"
#include "track/options.h"
#include "track/track.h"
#include "xml/document.h"

// Tracks as files of their own, in a folder of tracks. The root is "t" without a name.
namespace vgps {

enum class TrackSaving {
  saved,
  noFreeName,  // every name that may be tried is taken: nothing was written
  notWritten,  // the disk did not take it: nothing has changed
};

// Names the track from `local` when it has no name, and saves it under a free name. What was
// written of its attachments it no longer has. `open` is the disk.
TrackSaving saveTrackFile(Track& track, const std::string& folder, const RecordingOptions& options,
                          const DateTime& local, const ExclusiveOpener& open = openExclusive);

// A track as a file of its own.
std::string trackFileText(const Track& track, const RecordingOptions& options);

// Writes the track to that path, in place of what is there. False when the disk did not take it;
// then nothing has changed.
bool writeTrackFile(const Track& track, const std::string& path, const RecordingOptions& options,
                    const ExclusiveOpener& open = openExclusive);

// Saves a track element that came from another program.
TrackSaving importTrackFile(XmlElement element, const std::string& folder,
                            const ExclusiveOpener& open = openExclusive);

enum class TrackLoading {
  whole,
  damaged,  // the good points were loaded
  notATrack,
  noFile,
  unreadable,
};

// Replaces the track by the one in the file, named after the file when it has no name of its own.
// Unchanged unless `whole` or `damaged`.
// `foreign` becomes true when it holds attributes or elements of other programs; whoever does not
// ask for it is told that they are damage.
TrackLoading loadTrackFile(const std::string& path, int32_t speedUnit, Track& track,
                           bool* foreign = nullptr);

}  // namespace vgps
