#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "library/journal.h"
#include "library/track_library.h"

// What a start of the program does about a recording that did not end: for each of
// `existingJournals(path)` it opens a UnfinishedRecording, asks, and carries out the answer.
namespace vgps {

class UnfinishedRecording {
 public:
  explicit UnfinishedRecording(JournalSettings settings = {}) : settings_(std::move(settings)) {}

  // Takes hold of the journal, so that no other program asks about it too. Only after `open` there
  // is something to answer. An undamaged one without a single point is deleted, and is `missing`
  // then; a damaged one is `notAJournal`, and `message` says where it is.
  JournalResult open(const std::string& path);

  const std::string& path() const { return path_; }
  size_t points() const { return track_.points.size(); }
  bool damaged() const { return damaged_; }
  const std::string& backupPath() const { return backupPath_; }
  const Track& track() const { return track_; }
  // "An unfinished recording was found. Points: 12.", and what is to be said about damage.
  std::string question() const;
  // One sentence for a person about what `open` could not take hold of; empty for `open` and
  // `missing`.
  std::string message(JournalResult result) const;

  // Puts a longer track in the place of what the journal holds, where a disk did not take its end.
  void replaceTrack(Track track) { track_ = std::move(track); }

  // Continue: the points become those of `current`, which is to be started then, and the journal
  // is the caller's to append to.
  std::unique_ptr<Journal> continueInto(Track& current);
  // Save: into the library; the journal goes only when the track is there for sure. A damaged one
  // of which no copy could be kept is named ".bad" instead.
  LibraryResult save(TrackLibrary& library, const RecordingOptions& options, const DateTime& local);
  // Later: it stays as it is.
  void keepForLater();
  // Nobody wants it. False when the system does not let us delete it.
  bool discard();

 private:
  JournalSettings settings_;
  std::string path_;
  std::string backupPath_;
  bool damaged_ = false;
  Track track_;
  std::unique_ptr<Journal> journal_;
};

// The same for a journal at `path`, which is kept as `backupPath`; empty where it is not.
std::string journalMessage(JournalResult result, const std::string& path,
                           const std::string& backupPath = {});

}  // namespace vgps
