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

// Picks the complete fixes out of a receiver's lines, one for each epoch. Lines of one UTC time are
// one epoch, however far apart they come; of lines without a time each kind opens the next one.
//
// A fix whose altitude or speed the receiver has not given since it gained the fix waits for the
// GGA or RMC of its epoch. Where that does not come, the fix is complete when the next epoch
// begins, and the following ones do not wait for that kind until it comes again. So it is with the
// kind that has led the bursts, when the receiver stops sending it.
class EpochFixes {
 public:
  // To be called for each line after it was applied to `fix`. `said` are the Said bits of the line,
  // `source` is a number that changes with the source. Returns the fixes that are complete now, the
  // oldest first: none, one, or two. Valid until the next call.
  std::span<const FixRecord> take(const FixRecord& fix, uint32_t said, EpochRule rule,
                                  uint32_t source);
  // After the last line: the fix that is still waiting.
  std::span<const FixRecord> takeWaiting();

 private:
  bool continuesEpoch(const FixRecord& fix, bool timed) const;
  void beginEpoch(const FixRecord& fix, bool timed);
  int32_t missingKinds(const FixRecord& fix) const;
  void release();
  void complete(const FixRecord& fix);

  uint32_t source_ = 0;
  // The epoch that the last RMC or GGA belongs to.
  int32_t kinds_ = 0;       // that have come, bits as in SentenceKind; 0: there is no epoch yet
  bool timed_ = false;      // `time_` is known
  DateTime time_;           // of day
  uint32_t beginTick_ = 0;  // milliseconds
  bool picked_ = false;     // its fix is complete, or waits
  bool waits_ = false;
  FixRecord waiting_;
  int32_t leader_ = 0;  // the kind that is to close the epoch whose fix waits; 0: any
  int32_t absent_ = 0;  // kinds that were waited for in vain and have not come since
  std::array<FixRecord, 2> ready_;
  size_t readyCount_ = 0;
};

}  // namespace vgps
