#include "cli/track_input.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>

#include "cli/commands.h"
#include "platform/files.h"
#include "track/track_file.h"
#include "track/whole_file.h"

namespace vgps {
namespace {

std::optional<std::string> bytesOf(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(openFile(path, "rb"), std::fclose);
  if (file == nullptr) return std::nullopt;
  std::string bytes;
  char block[65536];
  for (size_t got = 1; got > 0;) {
    got = std::fread(block, 1, sizeof block, file.get());
    bytes.append(block, got);
  }
  if (std::ferror(file.get()) != 0) return std::nullopt;
  return bytes;
}

// Everything of which some point has something.
RecordingOptions optionsFor(const Track& track, int32_t speedUnit) {
  RecordingOptions options;
  options.speedUnit = speedUnit;
  for (const TrackPoint& point : track.points) {
    options.recordCell = options.recordCell || point.c != 0;
    options.recordSpeed = options.recordSpeed || point.speedKnots != 0;
    options.recordTime = options.recordTime || point.localTime != DateTime{};
    options.recordCourse = options.recordCourse || point.course != 0;
  }
  return options;
}

// The bytes decide, not the paths: one file can have many.
bool isDamagedInput(const std::string& bytes, std::span<const TrackInput> inputs) {
  return std::any_of(inputs.begin(), inputs.end(), [&](const TrackInput& input) {
    return input.damaged && bytesOf(input.path) == bytes;
  });
}

}  // namespace

bool readTrackInput(const std::string& path, int32_t speedUnit, TrackInput& input) {
  input.path = path;
  switch (loadTrackFile(path, speedUnit, input.track)) {
    case TrackLoading::whole: return true;
    case TrackLoading::damaged:
      input.damaged = true;
      warn(path + " is damaged: its " + std::to_string(input.track.points.size()) +
           " good points are used");
      return true;
    case TrackLoading::notATrack: fail(path + " is no track file"); return false;
    case TrackLoading::noFile: fail("no file " + path); return false;
    case TrackLoading::unreadable: fail("cannot read " + path); return false;
  }
  return false;
}

int writeTrackOutput(const Track& track, const std::string& path, int32_t speedUnit,
                     std::span<const TrackInput> inputs) {
  const std::optional<std::string> before = bytesOf(path);
  if (before && isDamagedInput(*before, inputs)) {
    const std::string kept = keepAsBad(path, *before);
    if (kept.empty()) {
      return fail("cannot keep the damaged " + path + " as " + badPathOf(path) +
                  ": nothing was written");
    }
    warn("the damaged file is kept as " + kept);
  }
  const RecordingOptions options = optionsFor(track, speedUnit);
  if (!writeTrackFile(track, path, options)) return fail("cannot write " + path);
  return 0;
}

}  // namespace vgps
