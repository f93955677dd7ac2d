#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

#include "library/journal.h"
#include "track/recording.h"

namespace vgps {

struct AppState;

// What recording asks for, passed on to the program's parts, and the journal that goes with it.
class AppRecordingHooks : public RecordingHooks {
 public:
  // `app` outlives this.
  explicit AppRecordingHooks(AppState& app);

  void startTimer() override;
  void stopTimer() override;
  void playSound(const char* name) override;
  void resetDrawnPath() override;
  void appendToDrawnPath(double longitude, double latitude) override;
  bool askToSave() override;
  bool save(Track& track) override;
  void trackChanged(Track& track) override;
  void pointRecorded(const TrackPoint& point) override;
  void flushPoints() override;
  void pointsSettled() override;

  // A recording begins: a journal of its own for it, with the points that the track has already.
  void beginJournal();
  // The program ends; what nobody has saved or given up stays on the disk for the next start. False
  // when the disk did not take everything.
  bool closeJournal();
  // The program goes on after such a close: the journal takes the points again that it lacks. How
  // many these are.
  size_t resumeJournal();
  // One that an ended program left: the points of the current track are in it already.
  void continueJournal(std::unique_ptr<Journal> journal);
  bool hasJournal() const { return journal_ != nullptr && journal_->isOpen(); }
  // Whether the track has recorded points that were neither saved nor given up, and no journal has
  // them either.
  bool inMemoryOnly() const { return inMemoryOnly_; }
  // How a journal of this program is set up, for those that take one over.
  JournalSettings journalSettings();

  // From any thread: the disk has refused points.
  void noteJournalFailure() { journalFailed_ = true; }
  // Whether the disk has refused points since this was asked last.
  bool takeJournalFailure() { return journalFailed_.exchange(false); }

 private:
  AppState& app_;
  std::atomic<bool> journalFailed_{false};  // set on the journal's thread
  bool journalRefused_ = false;             // it could not be made; told once in each recording
  bool inMemoryOnly_ = false;
  std::unique_ptr<Journal> journal_;
};

}  // namespace vgps
