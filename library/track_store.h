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
  missing,      // nothing there yet: the first track makes it
  damaged,      // what was readable is listed; a copy is kept before anything is written over it
  notALibrary,  // something else lies there: nothing is listed, and it is never written over
  unreadable,   // the system does not let us read it
};

enum class LibraryResult {
  done,
  notThere,      // no such track or point, or nothing to undo
  noName,        // an empty name
  changed,       // another program has changed the library: list it again
  inUse,         // another program is changing it at this moment
  notALibrary,   // something else lies there
  unreadable,    // the system does not let us read it
  backupFailed,  // no copy of the damaged file could be kept, so nothing was written over it
  noFreeName,    // in a folder: all names that may be tried are taken
  notWritten,    // the disk did not take it: the library is as it was
};

// The disk functions that a library uses. Tests replace them.
struct LibraryDisk {
  ExclusiveOpener open = openExclusive;
  int waitForOthersMs = 5000;  // while another program changes the library
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
  double kilometres = 0;  // on the surface, from point to point
  int64_t seconds = 0;    // from the first time to the last; 0 without times
  DateTime date;          // local time of the first point that has one; year 0 without
  int64_t startUtc = 0;   // milliseconds since 1970; 0: not known
  TrackBounds bounds;     // all 0 without points
  bool damaged = false;   // these are the good points of a track that is not whole
};

// Without a name.
TrackSummary summaryOf(const TrackSums& sums);
TrackSummary summaryOf(const Track& track);

// A track element as text.
struct TrackText {
  std::string name;
  std::string text;  // "<t ...>...</t>"
  // In a folder: where it lies or is to lie, empty for a free name; and whether the text is that of
  // the whole file.
  std::string file;
  bool isFile = false;
};

struct TrackEdit {
  size_t index = 0;                // of the track, or their number: at the end
  bool removes = true;             // that track goes
  std::vector<TrackText> texts{};  // these stand in its place, or in front of it
};

// Several edits carried out together, sorted by index.
using LibraryChange = std::vector<TrackEdit>;

class TrackStore {
 public:
  virtual ~TrackStore() = default;
  virtual const std::string& path() const = 0;
  virtual const std::string& backupPath() const = 0;
  // The document, or the first of the files that is not whole.
  virtual const std::string& damagedPath() const = 0;
  virtual bool isFolder() const = 0;
  virtual LibraryState state() const = 0;
  // Changes whenever tracks may have changed other than through `apply`.
  virtual uint64_t revision() const = 0;
  virtual LibraryState refresh() = 0;
  virtual const std::vector<TrackSummary>& tracks() const = 0;
  // Reads one track as it is stored.
  virtual LibraryResult read(size_t index, TrackText& out) = 0;
  // Carries out a change and returns how to undo it.
  virtual LibraryResult apply(const LibraryChange& change, LibraryChange& inverse) = 0;
};

}  // namespace vgps
