#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "track/options.h"
#include "track/track.h"

namespace vgps {

// A track file that a command works on.
struct TrackInput {
  std::string path;
  Track track;
  bool damaged = false;      // only the good points are in the track
  RecordingOptions written;  // which attributes the file has
};

// False after one line on standard error when nothing could be read. Of a damaged file one line
// says so, and its good part is taken.
bool readTrackInput(const std::string& path, int32_t speedUnit, TrackInput& input);

struct TrackOutput {
  const Track& track;
  const std::string& path;
};

// Writes the tracks with everything that the inputs and their points hold. A damaged input that
// stands where an output goes is kept beside it, named ".bad". The command's exit status: not 0
// after one line on standard error.
int writeTrackOutputs(std::span<const TrackOutput> outputs, int32_t speedUnit,
                      std::span<const TrackInput> inputs);
int writeTrackOutput(const TrackOutput& output, int32_t speedUnit,
                     std::span<const TrackInput> inputs);

// Says that nothing can be written there, for what is no file; the exit status of that.
int noPlaceForTrack(const std::string& path);

}  // namespace vgps
