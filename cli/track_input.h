#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "track/options.h"
#include "track/track.h"

namespace vgps {

// A track file that a command reads.
struct TrackInput {
  std::string path;
  Track track;
  bool damaged = false;      // only the readable points were loaded
  RecordingOptions written;  // which attributes the file contains
};

// Reads a track file. Prints a warning for a damaged file and uses its readable points. If nothing
// can be read, prints an error and returns false.
bool readTrackInput(const std::string& path, int32_t speedUnit, TrackInput& input);

struct TrackOutput {
  const Track& track;
  const std::string& path;
};

// Writes the tracks with all attributes that the inputs and their points have. If an output would
// overwrite a damaged input, that is first copied to a ".bad" file next to it. Returns the exit
// status: nonzero after one line on standard error.
int writeTrackOutputs(std::span<const TrackOutput> outputs, int32_t speedUnit,
                      std::span<const TrackInput> inputs);
int writeTrackOutput(const TrackOutput& output, int32_t speedUnit,
                     std::span<const TrackInput> inputs);

// Whether no single track may take the place of what is there: a folder, a device, a library, or
// the settings. The second reports it and returns the exit status.
bool isNoPlaceForTrack(const std::string& path);
int noPlaceForTrack(const std::string& path);

}  // namespace vgps
