#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "library/journal.h"
#include "library/track_library.h"
#include "library/unfinished_recording.h"
#include "platform/clock.h"
#include "track/recording.h"

namespace vgps {

// Where a recorder writes.
struct RecorderPlaces {
  std::string library = {};   // the track library
  std::string journal = {};   // of the track that is being recorded; empty: none is kept
  std::string settings = {};  // the settings document, whose place no track may take
  std::string file = {};      // not empty: tracks go into this file instead of the library
};

// What the recorder asks of the program around it. Called on the thread that records, unless it
// says otherwise.
class RecorderHooks {
 public:
  virtual ~RecorderHooks() = default;
  // As they are at this moment.
  virtual RecorderPlaces places() const = 0;
  // How the journal is opened.
  virtual ExclusiveOpener opener() const { return openExclusive; }
  // "Save the track?"
  virtual bool askToSave() { return true; }
  virtual void startTimer() {}  // runs while recording
  virtual void stopTimer() {}
  virtual void playSound(const char*) {}
  virtual void trackChanged() {}
  // No journal can be made at that path: the recording is in memory only.
  virtual void journalRefused(const std::string&) {}
  // The disk does not take the journal's points, which are kept in memory until it does. Once until
  // it works again, on the journal's own thread.
  virtual void journalFailed() {}
};

// The track library, opened for a track.
struct LibraryOpening {
  enum class Place { free, holdsSettings, holdsRecording };
  std::string path = {};
  Place place = Place::free;
  LibraryState state = LibraryState::whole;
  bool isNew = false;  // it was opened just now, and not before

  // Whether tracks can be kept there; a damaged library is mended by the first change.
  bool usable() const {
    return place == Place::free && state != LibraryState::notALibrary &&
           state != LibraryState::unreadable;
  }
};

// Why the library cannot lie at its place; empty when it can.
std::string placeMessage(const LibraryOpening& opening);

// What became of a track that was to be kept.
struct Keeping {
  enum class Outcome {
    nothing,   // there was nothing to keep
    declined,  // not wanted; the points are gone
    kept,      // on the disk
    refused,   // `library` or `result` says why; the points are still there
  };
  Outcome outcome = Outcome::nothing;
  LibraryOpening library = {};
  LibraryResult result = LibraryResult::done;
  std::string damagedBackupPath = {};  // the damaged library was copied there first; else empty
};

// How a recording ended where there is nobody to ask.
struct RecordingEnd {
  Keeping keeping;
  // What was found in the journal's place: `open` unless somebody has taken it away or spoiled it.
  JournalResult journal = JournalResult::open;
  size_t unsavedPoints = 0;  // points that only memory has
};

// A recording from its first point to the disk: the filter decides which fixes become points, a
// journal has them within seconds, the library or a file takes the whole track, and what a crash
// left is continued or kept. It returns what happened; the front ends put it into words.
class Recorder : private RecordingHooks {
 public:
  // `hooks` and `clock` outlive the recorder; `hooks` is called only after this has returned.
  Recorder(RecorderHooks& hooks, const Clock& clock, const LibraryDisk& disk = {});

  Track track;  // the one that is recorded, played or edited
  RecordingOptions options;
  TrackLibrary library;
  std::vector<std::pair<double, double>> drawnPath;  // longitude, latitude

  // False when something is being recorded or played.
  bool start();
  void pauseOrResume() { recording_.pauseOrResume(); }
  // Ends recording or playing. A recorded track is kept; with `ask` only when the hook says so, and
  // is cleared then. What could not be kept stays.
  Keeping stop(bool ask);
  // Every complete fix, while recording.
  void offer(const FixRecord& fix) { recording_.offer(fix); }
  // False when nothing is being recorded.
  bool mark() { return recording_.mark(); }
  void requestPoint() { recording_.requestPoint(); }
  const Recording& recording() const { return recording_; }

  // The library at its place; opened only once for each path.
  LibraryOpening openLibrary();

  // The track was replaced or given up: its journal goes.
  void pointsSavedOrDiscarded() override;
  // Whether the track has recorded points that were neither saved nor given up, and no journal has
  // them either.
  bool inMemoryOnly() const { return inMemoryOnly_; }
  bool hasJournal() const { return journal_->isOpen(); }
  // The program ends; what was neither saved nor given up stays on the disk for the next start.
  // False when the disk did not take everything.
  bool closeJournal() { return journal_->close(); }
  // The program goes on after such a close: the journal takes the points again that it lacks, a new
  // one where it is gone. Returns how many these are.
  size_t resumeJournal();

  // For those who open what an ended program unfinished.
  JournalSettings journalSettings();
  // Its points become the current track, which goes on being recorded into the same journal.
  void continueFrom(UnfinishedRecording& unfinished);
  // Into the library. What could not be kept stays in its journal, as long as `left` holds it.
  Keeping keepUnfinished(UnfinishedRecording& unfinished);
  // Ends a recording where nobody can be asked: into the library, or where that refuses into the
  // journal. May be repeated while points are unsavedPoints.
  RecordingEnd end();

 private:
  void startTimer() override { hooks_.startTimer(); }
  void stopTimer() override { hooks_.stopTimer(); }
  void playSound(const char* name) override { hooks_.playSound(name); }
  void resetDrawnPath() override { drawnPath.clear(); }
  void appendToDrawnPath(double longitude, double latitude) override {
    drawnPath.emplace_back(longitude, latitude);
  }
  bool askToSave() override { return !ask_ || hooks_.askToSave(); }
  bool save(Track& ended) override;
  void trackChanged(Track&) override { hooks_.trackChanged(); }
  void pointRecorded(const TrackPoint& point) override;
  void flushPoints() override;
  void beginJournal();

  RecorderHooks& hooks_;
  const Clock& clock_;
  Recording recording_;
  std::unique_ptr<Journal> journal_;
  bool journalRefused_ = false;  // told once in each recording
  bool inMemoryOnly_ = false;
  bool ask_ = true;
  Keeping keeping_;  // of the stop that is going on
};

}  // namespace vgps
