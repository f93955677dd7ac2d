#pragma once

#include <cstddef>
#include <functional>
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
struct RecorderPaths {
  std::string library = {};    // the track library
  std::string journal = {};    // of the track that is being recorded; empty: none is kept
  std::string settings = {};   // the settings document, whose place no track may take
  std::string discarded = {};  // folder of the recently discarded ones; empty: none are kept
  std::string file = {};       // not empty: tracks go into this file instead of the library
};

// What the recorder needs from the program around it. Called on the recording thread unless stated
// otherwise.
class RecorderHooks {
 public:
  virtual ~RecorderHooks() = default;
  // The current places; they may change.
  virtual RecorderPaths places() const = 0;
  // The function that opens the journal.
  virtual ExclusiveOpener opener() const { return openExclusive; }
  // "Save the track?"
  virtual bool askToSave() { return true; }
  virtual void startTimer() {}  // runs while recording
  virtual void stopTimer() {}
  virtual void playSound(const char*) {}
  virtual void trackChanged() {}
  // The journal cannot be created at that path: the recording is in memory only.
  virtual void journalRefused(const std::string&) {}
  // The disk refuses the journal's points, which stay in memory until it accepts them. Called once
  // until writing works again, on the journal's own thread.
  virtual void journalFailed() {}
  // The disk has the points again that it refused. On the journal's own thread, too.
  virtual void journalWorks() {}
};

// The result of opening the track library to save a track.
struct LibraryOpening {
  enum class Place { free, holdsSettings, holdsRecording };
  std::string path = {};
  Place place = Place::free;
  LibraryState state = LibraryState::whole;
  bool isNew = false;  // it was opened just now

  // Whether tracks can be saved there. A damaged library is repaired by the first change.
  bool usable() const {
    return place == Place::free && state != LibraryState::notALibrary &&
           state != LibraryState::unreadable;
  }
};

// Why the library cannot be stored at its path; empty if it can.
std::string placeMessage(const LibraryOpening& opening);

// The result of saving a track.
struct SaveResult {
  enum class Outcome {
    nothing,   // there was nothing to save
    declined,  // the user declined; the points are gone
    saved,     // saved to disk
    refused,   // not saved, see `library` or `result`; the points still exist
  };
  Outcome outcome = Outcome::nothing;
  LibraryOpening library = {};
  LibraryResult result = LibraryResult::done;
  std::string name = {};               // of the track in the library, when it is kept there
  std::string damagedBackupPath = {};  // the damaged library was copied there first; else empty
};

// How a recording ended in a program that cannot ask the user.
struct RecordingEnd {
  SaveResult keeping;
  // The state of the journal: `open` unless another program has removed or damaged it.
  JournalResult journal = JournalResult::open;
  size_t unsavedPoints = 0;  // points that exist only in memory
};

// A recording from its first point to the disk: the filter decides which fixes become points, the
// journal saves them within seconds, the library or a file gets the whole track, and a recording
// that a crash interrupted is continued or saved. Results are returned; the front ends put them
// into words.
class Recorder : private RecordingHooks {
 public:
  // `hooks` and `clock` must outlive the recorder. `hooks` is not called during construction.
  Recorder(RecorderHooks& hooks, const Clock& clock, const LibraryDisk& disk = {});

  Track track;  // the track being recorded, played, or edited
  RecordingOptions options;
  TrackLibrary library;
  std::vector<std::pair<double, double>> drawnPath;  // longitude, latitude

  // Returns false if a track is already being recorded or played.
  bool start();
  void pauseOrResume() { recording_.pauseOrResume(); }
  // Ends recording or playback. A recorded track is saved (with `ask`, only if the hook agrees) and
  // then cleared. A track that could not be saved stays.
  SaveResult stop(bool ask);
  // Call this with every complete fix while recording.
  void offer(const FixRecord& fix) { recording_.offer(fix); }
  // Returns false if no recording is in progress.
  bool mark() { return recording_.mark(); }
  void requestPoint() { recording_.requestPoint(); }
  const Recording& recording() const { return recording_; }

  // The track that was saved last in the library since the program started; empty: none.
  const std::string& lastSavedName() const { return lastSavedName_; }
  // `notFound` if the library has no track of that name any more.
  LibraryResult renameLastSaved(std::string_view name);

  // The library at its path, opened only once for each path.
  LibraryOpening openLibrary();

  // Ends the current track, which is idle. Points that are nowhere else stay on the disk for a
  // while: `discardedRecordings` has them.
  void discardTrack();
  // The track was replaced or opened: it is on the disk, and its journal goes.
  void pointsSavedOrDiscarded() override;
  // Records the fix as it is, whatever the filter says. Returns false if no recording is running or
  // the fix has no position.
  bool recordNow(const FixRecord& fix) { return recording_.recordNow(fix); }
  // Whether the track has recorded points that were neither saved nor discarded and are in no
  // journal.
  bool inMemoryOnly() const { return inMemoryOnly_; }
  bool hasJournal() const { return journal_->isOpen(); }
  // Call this when the program ends. Points that were neither saved nor discarded stay on disk for
  // the next start. Returns false if some could not be written.
  bool closeJournal() { return journal_->close(); }
  // Call this if the program continues after `closeJournal`: writes missing points to the journal
  // again, or to a new one if it is gone. Returns their number.
  size_t resumeJournal();

  // Settings for opening the journals of earlier runs that did not end properly.
  JournalSettings journalSettings();
  // Makes its points the current track and continues recording into the same journal.
  void continueFrom(UnfinishedRecording& unfinished);
  // Saves it to the library. On failure the points stay in its journal as long as `unfinished` is
  // open.
  SaveResult saveUnfinished(UnfinishedRecording& unfinished);
  // Ends a recording without asking: saves it to the library or, if that fails, keeps it in the
  // journal. Can be repeated while there are unsaved points.
  RecordingEnd end();

 private:
  void startTimer() override { hooks_.startTimer(); }
  void stopTimer() override { hooks_.stopTimer(); }
  void playSound(const char* name) override { hooks_.playSound(name); }
  void resetDrawnPath() override { drawnPath.clear(); }
  void appendToDrawnPath(double longitude, double latitude) override {
    drawnPath.emplace_back(longitude, latitude);
  }
  bool askToSave() override;
  bool save(Track& ended) override;
  SaveResult saveToLibrary(const std::function<LibraryResult()>& add);
  void trackChanged(Track&) override { hooks_.trackChanged(); }
  void pointRecorded(const TrackPoint& point) override;
  void flushPoints() override;
  void beginJournal();
  void keepDiscarded();

  RecorderHooks& hooks_;
  const Clock& clock_;
  Recording recording_;
  std::unique_ptr<Journal> journal_;
  bool journalRefused_ = false;  // reported once per recording
  bool inMemoryOnly_ = false;
  bool discarding_ = false;  // the points that are settled next are not wanted
  std::string lastSavedName_;
  SaveResult keeping_;  // of the stop that is going on
};

}  // namespace vgps
