#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "library/journal.h"
#include "library/track_library.h"

// A recording that was cut short by a crash or a power failure. At startup the program opens one
// for each of `existingJournals(path)`, asks the user, and carries out the answer.
namespace vgps {

class UnfinishedRecording {
 public:
  explicit UnfinishedRecording(JournalSettings settings = {}) : settings_(std::move(settings)) {}

  // Opens the journal for exclusive use, so that no other program offers to recover it. Call the
  // other functions only after `open` succeeds. An undamaged journal without points is deleted and
  // reported as `missing`; an unreadable one is reported as `notAJournal`, and `message` tells
  // where it is.
  JournalResult open(const std::string& path);

  const std::string& path() const { return path_; }
  size_t points() const { return track_.points.size(); }
  bool damaged() const { return damaged_; }
  const std::string& backupPath() const { return backupPath_; }
  const Track& track() const { return track_; }
  // "An unfinished recording was found. Points: 12.", plus a note about any damage.
  std::string question() const;
  // A message for the user about why `open` failed; empty for `open` and `missing`.
  std::string message(JournalResult result) const;

  // Replaces the journal's points by a longer track, for when a full disk kept the last points from
  // being written.
  void replaceTrack(Track track) { track_ = std::move(track); }

  // "Continue": moves the points into `current`, which the caller has started, and returns the
  // journal to append to.
  std::unique_ptr<Journal> continueInto(Track& current);
  // "Save": stores the track in the library. Deletes the journal only once the track is safely
  // stored; a damaged journal that could not be backed up is renamed to ".bad" instead.
  LibraryResult save(TrackLibrary& library, const RecordingOptions& options, const DateTime& local);
  // "Later": leaves the file unchanged.
  void keepForLater();
  // Deletes the recording. Returns false if the system refuses.
  bool discard();

 private:
  JournalSettings settings_;
  std::string path_;
  std::string backupPath_;
  bool damaged_ = false;
  uint64_t recording_ = 0;  // Track::recording
  Track track_;
  std::unique_ptr<Journal> journal_;
};

// `UnfinishedRecording::message` for a journal at `path`; `backupPath` is its copy, empty if there
// is none.
std::string journalMessage(JournalResult result, const std::string& path,
                           const std::string& backupPath = {});

}  // namespace vgps
