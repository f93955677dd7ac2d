#pragma once

#include <cstdint>

#include "platform/clock.h"
#include "track/options.h"
#include "track/track.h"

namespace vgps {

// Why a fix is not recorded.
enum class RecordingRule : uint8_t {
  none,
  noPosition,  // it stands at 0,0 or off the earth
  manual,      // the user has not asked for it
  everyNth,    // so many are left out
  tooSlow,     // below the speed threshold
  noChange,    // neither course nor altitude nor one of the intervals has passed its threshold
};

// What recording asks of the program around it, which need not do all of it. Called on the thread
// that records.
class RecordingHooks {
 public:
  virtual ~RecordingHooks() = default;
  virtual void startTimer() {}  // runs while recording
  virtual void stopTimer() {}
  virtual void playSound(const char*) {}
  virtual void resetDrawnPath() {}
  virtual void appendToDrawnPath(double, double) {}  // longitude, latitude
  // "Save the track?"; No is the default.
  virtual bool askToSave() { return false; }
  // Into the library or a file of its own, and the library's view follows. False when the track
  // is not on the disk; then the hook has told the user.
  virtual bool save(Track&) { return false; }
  virtual void trackChanged(Track&) {}

  // For a journal. A point was appended; everything so far belongs on the disk soon; the points
  // were saved or given up, so that nothing needs to survive any more.
  virtual void pointRecorded(const TrackPoint&) {}
  virtual void flushPoints() {}
  virtual void pointsSavedOrDiscarded() {}
};

// Recording into the current track: which fixes become points, and what goes on around it.
class Recording {
 public:
  // All of them outlive the recording.
  Recording(Track& current, const RecordingOptions& options, RecordingHooks& hooks,
            const Clock& clock)
      : current_(current), options_(options), hooks_(hooks), clock_(clock) {}

  // False when the track is not idle.
  bool start();
  // The same for a recording that was broken off: the lengths between the points that the track has
  // count as if they were recorded now.
  bool continueRecovered();
  // Ignored while a track is played.
  void pauseOrResume();
  // Ends recording or playing of `track`, of the current one when null. A recorded track is saved;
  // with `ask` only when the user says so, and is cleared then. What could not be saved stays.
  void stop(Track* track, bool ask);

  // Every new fix, while recording. True when it became a point. A `force` that is not 0 is kept
  // as the point's status; it does not stand above the speed threshold.
  bool offer(const FixRecord& fix, uint32_t force);
  // The same; forced while a mark waits for its point.
  bool offer(const FixRecord& fix) { return offer(fix, pendingMark_); }

  // Records the fix as it is. False when nothing is being recorded or it has no position.
  bool recordNow(const FixRecord& fix);

  // The rule that kept the last offered fix from being recorded; `none` when it was recorded.
  RecordingRule lastRule() const { return lastRule_; }
  // The rule that has kept all fixes from being recorded for ten seconds while they go on coming;
  // `none` at all other times.
  RecordingRule waitingFor() const;

  // The next point that can be recorded is marked with the next number: 1, 2, ... from each start.
  // While a mark waits, asking again changes nothing. False when nothing is being recorded.
  bool mark();
  // In manual mode: the next fix is recorded.
  void requestPoint() { requested_ = true; }
  uint32_t pendingMark() const { return pendingMark_; }

  // In the distance unit that the display had at each point. The first begins at each start, the
  // second counts on for as long as the program runs.
  double distance() const { return distance_; }
  double distance3d() const { return distance3d_; }

 private:
  RecordingRule ruleAgainst(const FixRecord& fix, uint32_t force);
  bool passesInterval(const FixRecord& fix) const;
  bool passesCountdown();
  void record(const FixRecord& fix, uint32_t force);
  void addDistance(const FixRecord& last, const FixRecord& fix);
  void discard(Track& track);

  Track& current_;
  const RecordingOptions& options_;
  RecordingHooks& hooks_;
  const Clock& clock_;
  double distance_ = 0;
  double distance3d_ = 0;
  int32_t countdown_ = 0;
  bool requested_ = false;
  RecordingRule lastRule_ = RecordingRule::none;
  uint32_t lastOfferTick_ = 0;   // milliseconds
  uint32_t lastRecordTick_ = 0;  // likewise; of the start before the first point
  uint32_t lastMark_ = 0;
  uint32_t pendingMark_ = 0;
};

}  // namespace vgps
