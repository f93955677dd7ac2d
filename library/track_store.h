#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/date_time.h"
#include "platform/exclusive_file.h"
#include "track/track.h"
#include "track/track_statistics.h"

// The storage of a library, either a document or a folder.
namespace vgps {

enum class LibraryState {
  whole,
  missing,      // nothing there yet; adding a track creates it
  damaged,      // the readable tracks are listed; a copy is saved before overwriting
  notALibrary,  // another kind of file: no tracks are listed, and it is never overwritten
  unreadable,   // the system denies reading it
};

enum class LibraryResult {
  done,
  notFound,      // no such track or point, or nothing to undo
  noName,        // the name is empty
  changed,       // another program has changed the library: call `refresh` first
  inUse,         // another program is changing it right now
  notALibrary,   // another kind of file
  unreadable,    // the system denies reading it
  backupFailed,  // the damaged file could not be backed up, so it was not overwritten
  noFreeName,    // in a folder: all possible names are taken
  notWritten,    // a disk error; the library is unchanged
};

// The disk functions that a library uses. Tests replace them.
struct LibraryDisk {
  ExclusiveOpener open = openExclusive;
  int waitForOthersMs = 5000;  // how long to wait while another program changes the library
};

// The result of locking the library: `done` if it is locked.
constexpr LibraryResult lockResult(FileOpening opening) {
  if (opening == FileOpening::opened) return LibraryResult::done;
  return opening == FileOpening::inUse ? LibraryResult::inUse : LibraryResult::notWritten;
}

// A track's entry in a list.
struct TrackSummary {
  std::string name;
  uint64_t points = 0;
  double kilometers = 0;   // on the surface, along the points
  int64_t seconds = 0;     // from the first time to the last; 0 without times
  DateTime date;           // local time of the first point that has one; year 0 without
  int64_t startUtc = 0;    // milliseconds since 1970; 0: not known
  uint64_t recording = 0;  // Track::recording
  TrackBounds bounds;      // all 0 without points
  bool damaged = false;    // the track is incomplete; these values are from its readable points
};

// The returned summary has no name.
TrackSummary summaryOf(const TrackSums& sums);
TrackSummary summaryOf(const Track& track);

// A track element as text.
struct TrackText {
  std::string name;
  std::string text;  // "<t ...>...</t>"
  // In a folder: the file that stores it or is going to, empty to choose an unused name; and
  // whether `text` is the contents of the whole file.
  std::string file;
  bool isFile = false;
};

// Replaces a track of the library, or inserts new tracks before it.
struct TrackEdit {
  size_t index = 0;                // of the track; the number of tracks to append at the end
  bool removes = true;             // whether to remove that track
  std::vector<TrackText> texts{};  // the tracks to insert there
};

// Several edits carried out together, sorted by index.
using LibraryChange = std::vector<TrackEdit>;

class TrackStore {
 public:
  virtual ~TrackStore() = default;
  virtual const std::string& path() const = 0;
  virtual const std::string& backupPath() const = 0;
  // The document, or the first damaged file of the folder.
  virtual const std::string& damagedPath() const = 0;
  virtual bool isFolder() const = 0;
  virtual LibraryState state() const = 0;
  // Changes whenever tracks may have been changed other than through `apply`.
  virtual uint64_t revision() const = 0;
  virtual LibraryState refresh() = 0;
  virtual const std::vector<TrackSummary>& tracks() const = 0;
  // Reads one track as it is stored.
  virtual LibraryResult read(size_t index, TrackText& out) = 0;
  // Carries out a change and sets `inverse` to the change that undoes it.
  virtual LibraryResult apply(const LibraryChange& change, LibraryChange& inverse) = 0;
};

}  // namespace vgps
