#include "gps/sentence_stats.h"

#include <algorithm>

namespace vgps {

void RateMeter::count(uint32_t tick) {
  if (tick - lastTick_ > kWindowMs) {  // the first event, or the first after a pause
    inWindow_ = 0;
    lastWindowRate_ = -1;
  }
  if (inWindow_ == 0 && lastWindowRate_ < 0) windowStart_ = tick;
  const uint32_t elapsed = tick - windowStart_;
  if (elapsed >= kWindowMs) {
    lastWindowRate_ = inWindow_ * 1000.0 / elapsed;
    windowStart_ = tick;
    inWindow_ = 0;
  }
  ++inWindow_;
  lastTick_ = tick;
}

double RateMeter::perSecond(uint32_t tick) const {
  if (tick - lastTick_ > kWindowMs) return 0;
  if (lastWindowRate_ >= 0) return lastWindowRate_;
  const uint32_t elapsed = lastTick_ - windowStart_;
  // A single burst tells nothing about the rate: a kind sent every five seconds would show
  // thousands a second.
  constexpr uint32_t kBurstMs = 500;
  return elapsed < kBurstMs ? 0 : (inWindow_ - 1) * 1000.0 / elapsed;
}

uint64_t SentenceStats::sum(uint64_t KindStats::*member) const {
  uint64_t total = 0;
  for (const KindStats& kind : kinds) total += kind.*member;
  return total;
}

uint64_t SentenceStats::total() const { return binary + sum(&KindStats::count); }

void SentenceStats::countLine(const Sentence& sentence, uint32_t tick) {
  KindStats& kind = kinds[static_cast<size_t>(sentence.parsedType())];
  ++kind.count;
  kind.rate.count(tick);
  switch (sentence.checksum()) {
    case Checksum::right: ++kind.checksumRight; break;
    case Checksum::wrong: ++kind.checksumWrong; break;
    case Checksum::absent: ++kind.checksumAbsent; break;
  }
}

void SentenceStats::countLeftOut(const SentenceName& name, const TalkerVerdict& why) {
  const auto end = leftOut.begin() + static_cast<std::ptrdiff_t>(leftOutKinds);
  const auto found = std::find_if(leftOut.begin(), end, [&](const LeftOutSentences& one) {
    return one.talker == name.talker && one.type == name.type && one.why.reason == why.reason;
  });
  if (found == leftOut.end()) return;
  if (found == end) *found = {name.talker, name.type, why}, ++leftOutKinds;
  found->why = why;
  ++found->count;
}

}  // namespace vgps
