#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "gps/fix.h"

namespace vgps {

struct GpsState;

// A receiver sends the sentences of one epoch in a burst. With the automatic setting, the first RMC
// or GGA of a burst leads it. Sets `epochSentenceKind` to the leader's kind on a following RMC or
// GGA, and to 0 on the leader and on any other line. `sinceLastLine` is in milliseconds.
void followBurst(GpsState& state, int32_t kind, uint32_t sinceLastLine);

// What `epochSentenceKind` says of a line, and whether a burst's leader says it or the user's
// setting.
struct EpochRule {
  int32_t kind = 0;
  bool automatic = true;
};
EpochRule epochRuleOf(const GpsState& state);

// Whether a sentence of `kind` may complete the fix of an epoch: RMC and GGA do, those only that
// `epochSentenceKind` (bits 1 RMC, 2 GGA) names when it is not 0.
bool closesEpoch(int32_t kind, int32_t epochSentenceKind);

// Picks the complete fixes from a receiver's lines, one per epoch. Lines with the same UTC time
// belong to one epoch, however far apart they arrive; without times, each repeated kind of sentence
// starts the next epoch.
//
// If the receiver has not reported altitude or speed since it acquired the fix, the fix waits for
// the GGA or RMC of its epoch. If that does not arrive, the fix is complete when the next epoch
// begins, and later fixes do not wait for that kind until it is received again.
class EpochFixes {
 public:
  // Call this for each line after applying it to `fix`. `said` are the Said bits of the line,
  // `source` is a number that changes with the source. Returns the fixes that are now complete,
  // oldest first: none, one, or two. Valid until the next call.
  std::span<const FixRecord> take(const FixRecord& fix, uint32_t said, EpochRule rule,
                                  uint32_t source);
  // Call this after the last line: returns the fix that is still waiting.
  std::span<const FixRecord> takeWaiting();

 private:
  bool continuesEpoch(const FixRecord& fix, bool timed) const;
  void beginEpoch(const FixRecord& fix, bool timed);
  int32_t missingKinds(const FixRecord& fix) const;
  void release();
  void complete(const FixRecord& fix);

  uint32_t source_ = 0;
  // The epoch of the last RMC or GGA.
  int32_t kinds_ = 0;       // received, bits as in SentenceKind; 0: no epoch yet
  bool timed_ = false;      // whether `time_` is known
  DateTime time_;           // of day
  uint32_t beginTick_ = 0;  // milliseconds
  bool picked_ = false;     // its fix is complete or waiting
  bool waits_ = false;
  FixRecord waiting_;
  int32_t leader_ = 0;  // the kind that is to close the epoch whose fix waits; 0: any
  int32_t absent_ = 0;  // kinds that were waited for in vain and have not come since
  std::array<FixRecord, 2> ready_;
  size_t readyCount_ = 0;
};

}  // namespace vgps
