#include "gps/epoch.h"

#include <utility>

#include "gps/gps_fix.h"

namespace vgps {
namespace {

constexpr uint32_t kBurstGapMs = 100;

// If the receiver's clock has stopped, the next epoch begins when the same kind of sentence is
// repeated after this time. Within a burst, no kind is repeated this late.
constexpr uint32_t kStoppedClockMs = 900;

bool isSameTimeOfDay(const DateTime& a, const DateTime& b) {
  return a.hour == b.hour && a.minute == b.minute && a.second == b.second &&
         a.millisecond == b.millisecond;
}

}  // namespace

void followBurst(GpsState& state, int32_t kind, uint32_t sinceLastLine) {
  const int32_t setting = state.options.epochSentenceSetting;
  state.epochSentenceKind = setting;
  if (setting != 0 || (kind != kRmc && kind != kGga)) return;
  if (sinceLastLine > kBurstGapMs) {
    state.leadingSentenceKind = kind;
  } else if (state.leadingSentenceKind != kNoSentence) {
    state.epochSentenceKind = state.leadingSentenceKind == kGga ? kGga : kRmc;
  }
}

EpochRule epochRuleOf(const GpsState& state) {
  return {state.epochSentenceKind, state.options.epochSentenceSetting == 0};
}

bool closesEpoch(int32_t kind, int32_t epochSentenceKind) {
  if (kind != kRmc && kind != kGga) return false;
  return epochSentenceKind == 0 || (kind & epochSentenceKind) != 0;
}

std::span<const FixRecord> EpochFixes::take(const FixRecord& fix, uint32_t said, EpochRule rule,
                                            uint32_t source) {
  readyCount_ = 0;
  if (source != source_) *this = {};
  source_ = source;
  const int32_t kind = fix.lastSentenceKind;
  if (kind != kRmc && kind != kGga) return {};
  absent_ &= ~kind;
  const bool timed = (said & kSaidTime) != 0;
  if (!continuesEpoch(fix, timed)) beginEpoch(fix, timed);
  if (fix.fixStatus == 0) absent_ = 0;  // after a new fix is acquired, wait again
  kinds_ |= kind;
  if (waits_) {
    if (fix.fixStatus != 0) waiting_ = fix;
    if (fix.fixStatus == 0 || missingKinds(fix) == 0) release();
  } else if (const bool closes = closesEpoch(kind, rule.kind);
             !picked_ && fix.fixStatus != 0 && (closes || rule.automatic)) {
    picked_ = true;
    leader_ = closes ? 0 : rule.kind;
    waits_ = missingKinds(fix) != 0;
    waiting_ = fix;
    if (!waits_) complete(fix);
  }
  return {ready_.data(), readyCount_};
}

std::span<const FixRecord> EpochFixes::takeWaiting() {
  readyCount_ = 0;
  if (waits_) release();
  return {ready_.data(), readyCount_};
}

bool EpochFixes::continuesEpoch(const FixRecord& fix, bool timed) const {
  const bool repeats = (kinds_ & fix.lastSentenceKind) != 0;
  if (kinds_ == 0) return false;
  if (!timed || !timed_) return !repeats;
  if (!isSameTimeOfDay(fix.utcTime, time_)) return false;
  return !repeats || fix.receiveTick - beginTick_ < kStoppedClockMs;
}

void EpochFixes::beginEpoch(const FixRecord& fix, bool timed) {
  if (waits_) {
    absent_ |= missingKinds(waiting_) & ~fix.lastSentenceKind;
    release();
  }
  kinds_ = 0;
  picked_ = false;
  timed_ = timed;
  time_ = fix.utcTime;
  beginTick_ = fix.receiveTick;
}

// The kinds of sentences that may still provide the unknown values. The course alone is not worth
// waiting for: receivers leave it empty at rest.
int32_t EpochFixes::missingKinds(const FixRecord& fix) const {
  const int32_t wanted =
      leader_ | (fix.altitudeKnown() ? 0 : int32_t{kGga}) | (fix.speedKnown() ? 0 : int32_t{kRmc});
  return wanted & ~kinds_ & ~absent_;
}

void EpochFixes::release() {
  waits_ = false;
  complete(waiting_);
}

void EpochFixes::complete(const FixRecord& fix) { ready_[readyCount_++] = fix; }

}  // namespace vgps
