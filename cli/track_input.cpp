#include "cli/track_input.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "cli/commands.h"
#include "files/bad_copies.h"
#include "files/input_file.h"
#include "files/whole_file.h"
#include "library/document_layout.h"
#include "library/track_library.h"
#include "platform/files.h"
#include "track/track_file.h"

namespace vgps {
namespace {

std::optional<std::string> bytesOf(const std::string& path) {
  std::string bytes;
  if (!readWholeFile(path, bytes)) return std::nullopt;
  return bytes;
}

// The attributes that the input files had, and any others that some point uses.
RecordingOptions optionsFor(const Track& track, int32_t speedUnit,
                            std::span<const TrackInput> inputs) {
  RecordingOptions options;
  options.speedUnit = speedUnit;
  for (const TrackInput& input : inputs) {
    options.recordCell = options.recordCell || input.written.recordCell;
    options.recordSpeed = options.recordSpeed || input.written.recordSpeed;
    options.recordTime = options.recordTime || input.written.recordTime;
    options.recordCourse = options.recordCourse || input.written.recordCourse;
  }
  for (const TrackPoint& point : track.points) {
    options.recordCell = options.recordCell || point.c != 0;
    options.recordSpeed = options.recordSpeed || point.speedKnots != 0;
    options.recordTime = options.recordTime || point.localTime != DateTime{};
    options.recordCourse = options.recordCourse || point.course != 0;
  }
  return options;
}

bool isInput(const std::string& path, std::span<const TrackInput> inputs) {
  return std::any_of(inputs.begin(), inputs.end(),
                     [&](const TrackInput& input) { return isSameFile(path, input.path); });
}

// Compares bytes rather than paths, because a file may have several paths.
bool isDamagedInput(const std::string& bytes, std::span<const TrackInput> inputs) {
  return std::any_of(inputs.begin(), inputs.end(), [&](const TrackInput& input) {
    return input.damaged && bytesOf(input.path) == bytes;
  });
}

// Returns false if the file to be overwritten is damaged and could not be backed up.
bool keepDamaged(const std::string& path, std::span<const TrackInput> inputs) {
  const std::optional<std::string> before = bytesOf(path);
  if (!before || !isDamagedInput(*before, inputs)) return true;
  const std::string kept = saveBadCopy(path, *before);
  if (!kept.empty()) warn("the damaged file was saved as " + kept);
  return !kept.empty();
}

}  // namespace

bool readTrackInput(const std::string& path, int32_t speedUnit, TrackInput& input) {
  input.path = path;
  if (const auto text = bytesOf(path)) input.written = optionsUsedIn(*text);
  switch (loadTrackFile(path, speedUnit, input.track)) {
    case TrackLoading::whole: return true;
    case TrackLoading::damaged:
      input.damaged = true;
      warn(path + " is damaged: its " + std::to_string(input.track.points.size()) +
           (input.track.points.size() == 1 ? " readable point is used"
                                           : " readable points are used"));
      return true;
    case TrackLoading::notATrack: fail(path + " is not a track file"); return false;
    case TrackLoading::noFile:
      fail(isNotAFile(path) ? cannotRead(path) : "file not found: " + path);
      return false;
    case TrackLoading::unreadable: fail(cannotRead(path)); return false;
  }
  return false;
}

bool isNoPlaceForTrack(const std::string& path) {
  return fileKind(path) == FileKind::other || isLibraryFile(path);
}

int noPlaceForTrack(const std::string& path) {
  if (isLibraryFile(path)) {
    return fail(path + " is a track library or a settings file; nothing was written");
  }
  return fail(path + " is a folder or a device, not a file; nothing was written");
}

int writeTrackOutputs(std::span<const TrackOutput> outputs, int32_t speedUnit,
                      std::span<const TrackInput> inputs) {
  for (const TrackOutput& output : outputs) {
    if (isNoPlaceForTrack(output.path)) return noPlaceForTrack(output.path);
    if (!keepDamaged(output.path, inputs)) {
      return fail("cannot back up the damaged file " + output.path + "; nothing was written");
    }
  }
  // All outputs are written to disk before the first is renamed to its target, and those that
  // replace an input come last: until then the whole track still exists.
  std::vector<std::pair<std::unique_ptr<OutputFile>, const TrackOutput*>> files;
  for (const bool replacing : {false, true}) {
    for (const TrackOutput& output : outputs) {
      if (isInput(output.path, inputs) != replacing) continue;
      auto file = std::make_unique<OutputFile>(output.path);
      const RecordingOptions options = optionsFor(output.track, speedUnit, inputs);
      if (!file->write(trackFileText(output.track, options)) || !file->flush()) {
        return fail("cannot write " + output.path + file->reason());
      }
      files.emplace_back(std::move(file), &output);
    }
  }
  for (const auto& [file, output] : files) {
    if (!file->finish()) {
      return fail("cannot replace " + output->path + "; it may be in use by another program");
    }
  }
  return 0;
}

int writeTrackOutput(const TrackOutput& output, int32_t speedUnit,
                     std::span<const TrackInput> inputs) {
  return writeTrackOutputs({&output, 1}, speedUnit, inputs);
}

}  // namespace vgps
