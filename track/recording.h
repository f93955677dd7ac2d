#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/clock.h"
#include "track/jump_filter.h"
#include "track/options.h"
#include "track/track.h"

namespace vgps {

// Why a fix is not recorded.
enum class RecordingRule : uint8_t {
  none,
  noPosition,  // it stands at 0,0 or off the earth
  jump,        // out of reach, see JumpFilter
  manual,      // the user has not asked for it
  everyNth,    // so many are left out
  tooSlow,     // below the speed threshold
  noChange,    // course, altitude, and intervals are all below their thresholds
};

// What a recording needs from the program around it; each function is optional. Called on the
// recording thread.
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
  // Saves the track to the library or to a file. Returns false if the track is not on disk; the
  // hook has told the user then.
  virtual bool save(Track&) { return false; }
  virtual void trackChanged(Track&) {}

  // For a journal: a point was appended; all points so far should be flushed to disk soon; the
  // points were saved or discarded and need no journal anymore.
  virtual void pointRecorded(const TrackPoint&) {}
  virtual void flushPoints() {}
  virtual void pointsSavedOrDiscarded() {}
};

// Records into the current track: decides which fixes become points, and controls timers, sounds,
// and saving.
class Recording {
 public:
  // All arguments must outlive the recording.
  Recording(Track& current, const RecordingOptions& options, RecordingHooks& hooks,
            const Clock& clock)
      : current_(current), options_(options), hooks_(hooks), clock_(clock) {}

  // Returns false if the track is not idle.
  bool start();
  // Continues an interrupted recording: like `start`, but the distances include the points that the
  // track already has.
  bool continueRecovered();
  // Ignored during playback.
  void pauseOrResume();
  // Ends recording or playback of `track`, or of the current track if null. A recorded track is
  // saved (with `ask`, only if the user agrees) and then cleared. A track that could not be saved
  // stays.
  void stop(Track* track, bool ask);

  // Call this for every new fix while recording. Returns true if it became a point. A nonzero
  // `force` is stored as the point's status; such a fix need not exceed the speed threshold.
  bool offer(const FixRecord& fix, uint32_t force);
  // The same, forced if a mark is pending.
  bool offer(const FixRecord& fix) { return offer(fix, pendingMark_); }

  // Records the fix regardless of the filter. Returns false if no recording is in progress or the
  // fix has no position.
  bool recordNow(const FixRecord& fix);

  // The rule that rejected the last fix; `none` if it was recorded.
  RecordingRule lastRule() const { return lastRule_; }
  // The rule that has rejected all fixes for ten seconds while they keep arriving; otherwise
  // `none`.
  RecordingRule waitingFor() const;

  // How many fixes the jump filter has kept from being recorded since the start.
  size_t jumps() const { return jumps_; }

  // The next point that can be recorded is marked with the next number: 1, 2, ... from each start.
  // While a mark waits, asking again changes nothing. False when nothing is being recorded.
  bool mark();
  // In manual mode: requests that the next fix be recorded.
  void requestPoint() { requested_ = true; }
  uint32_t pendingMark() const { return pendingMark_; }

  // Each leg is counted in the distance unit of the display at that time. `distance` starts over
  // with each recording, `distance3d` accumulates while the program runs.
  double distance() const { return distance_; }
  double distance3d() const { return distance3d_; }

 private:
  // The fix for the filter: where the receiver gives no speed, with speed and course from the place
  // of the fix before.
  FixRecord withMotion(FixRecord fix) const;
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
  JumpFilter jumpFilter_;
  size_t jumps_ = 0;
  int32_t countdown_ = 0;
  bool requested_ = false;
  RecordingRule lastRule_ = RecordingRule::none;
  uint32_t lastOfferTick_ = 0;         // milliseconds
  std::optional<Position> lastPlace_;  // of the fix that was offered then
  uint32_t lastRecordTick_ = 0;        // likewise; of the start before the first point
  uint32_t lastMark_ = 0;
  uint32_t pendingMark_ = 0;
};

}  // namespace vgps
