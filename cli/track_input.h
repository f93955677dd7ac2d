#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "track/track.h"

namespace vgps {

// A track file that a command works on.
struct TrackInput {
  std::string path;
  Track track;
  bool damaged = false;  // only the good points are in the track
};

// False after one line on standard error when nothing could be read. Of a damaged file one line
// says so, and its good part is taken.
bool readTrackInput(const std::string& path, int32_t speedUnit, TrackInput& input);

// Writes the track with everything that its points hold. A damaged input that stands where the
// output goes is kept beside it, named ".bad". The command's exit status: not 0 after one line on
// standard error.
int writeTrackOutput(const Track& track, const std::string& path, int32_t speedUnit,
                     std::span<const TrackInput> inputs);

}  // namespace vgps
