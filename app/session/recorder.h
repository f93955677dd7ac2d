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
struct RecorderPlaces {
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

// Why the library cannot be stored at its path; empty if it can.
std::string placeMessage(const LibraryOpening& opening);

// The result of saving a track.
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
  std::string name = {};               // of the track in the library, when it is kept there
  std::string damagedBackupPath = {};  // the damaged library was copied there first; else empty
};

// How a recording ended in a program that cannot ask the user.
struct RecordingEnd {
  Keeping keeping;
  // The state of the journal: `open` unless another program has removed or damaged it.
  JournalResult journal = JournalResult::open;
  size_t unsavedPoints = 0;  // points that only memory has
};

// A recording from its first point to the disk: the filter decides which fixes become points, the
// journal saves them within seconds, the library or a file gets the whole track, and a recording
// that a crash interrupted is continued or saved. Results are returned; the front ends put them
// into words.
class Recorder : private RecordingHooks {
 public:
  // `hooks` and `clock` outlive the recorder; `hooks` is called only after this has returned.
  Recorder(RecorderHooks& hooks, const Clock& clock, const LibraryDisk& disk = {});

  Track track;  // the one that is recorded, played or edited
  RecordingOptions options;
  TrackLibrary library;
  std::vector<std::pair<double, double>> drawnPath;  // longitude, latitude

  // Returns false if a track is already being recorded or played.
  bool start();
  void pauseOrResume() { recording_.pauseOrResume(); }
  // Ends recording or playback. A recorded track is saved, with `ask` only if the hook agrees, and
  // then cleared. A track that could not be saved stays.
  Keeping stop(bool ask);
  // Every complete fix, while recording.
  void offer(const FixRecord& fix) { recording_.offer(fix); }
  // Returns false if no recording is in progress.
  bool mark() { return recording_.mark(); }
  void requestPoint() { recording_.requestPoint(); }
  const Recording& recording() const { return recording_; }

  // The track that was saved last in the library since the program started; empty: none.
  const std::string& lastSavedName() const { return lastSavedName_; }
  // `notThere` if the library has no track of that name any more.
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
  // The program ends; points that were neither saved nor discarded stay on disk for the next start.
  // Returns false if some could not be written.
  bool closeJournal() { return journal_->close(); }
  // The program continues after such a close: missing points are written to the journal again, or
  // to a new one if it is gone. Returns their number.
  size_t resumeJournal();

  // For opening the journals of programs that did not end properly.
  JournalSettings journalSettings();
  // Its points become the current track, and recording continues into the same journal.
  void continueFrom(UnfinishedRecording& unfinished);
  // Saves it to the library. On failure the points stay in its journal for as long as `unfinished`
  // has it open.
  Keeping keepUnfinished(UnfinishedRecording& unfinished);
  // Ends a recording without asking: saves it to the library or, if that fails, to the journal. May
  // be repeated while points are unsaved.
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
  Keeping keepInLibrary(const std::function<LibraryResult()>& add);
  void trackChanged(Track&) override { hooks_.trackChanged(); }
  void pointRecorded(const TrackPoint& point) override;
  void flushPoints() override;
  void beginJournal();
  void keepDiscarded();

  RecorderHooks& hooks_;
  const Clock& clock_;
  Recording recording_;
  std::unique_ptr<Journal> journal_;
  bool journalRefused_ = false;  // told once in each recording
  bool inMemoryOnly_ = false;
  bool discarding_ = false;  // the points that are settled next are not wanted
  std::string lastSavedName_;
  Keeping keeping_;  // of the stop that is going on
};

}  // namespace vgps
