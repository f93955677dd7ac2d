#pragma once

#include <array>
#include <cstdint>

#include "gps/sentence.h"
#include "gps/talkers.h"

namespace vgps {

// Events per second over the last few seconds, from their ticks.
class RateMeter {
 public:
  void count(uint32_t tick);
  // 0 if there have been no events for a while before `tick`.
  double perSecond(uint32_t tick) const;

 private:
  static constexpr uint32_t kWindowMs = 4000;
  uint32_t windowStart_ = 0;
  uint32_t lastTick_ = 0;
  uint32_t inWindow_ = 0;
  double lastWindowRate_ = -1;  // of the previous window; negative: none
};

struct KindStats {
  uint64_t count = 0;
  uint64_t checksumRight = 0;
  uint64_t checksumWrong = 0;
  uint64_t checksumAbsent = 0;
  RateMeter rate;
};

// The RMC, GGA, and GSA sentences of one talker that were not parsed, for one reason.
struct LeftOutSentences {
  uint32_t talker = 0;  // letters as in SentenceName
  SentenceType type = SentenceType::other;
  TalkerVerdict why;
  uint64_t count = 0;
};

// Counts of received lines and messages. Counting does not affect what is accepted.
struct SentenceStats {
  std::array<KindStats, kSentenceTypes> kinds;
  uint64_t rejected = 0;     // lines that do not start with "$"
  uint64_t binary = 0;       // complete binary messages
  uint64_t strayStarts = 0;  // lines with stray characters before the sentence

  // For the current source; not counted if there is no room left.
  std::array<LeftOutSentences, 12> leftOut;
  size_t leftOutKinds = 0;

  const KindStats& of(SentenceType kind) const { return kinds[static_cast<size_t>(kind)]; }
  uint64_t total() const;  // accepted lines and binary messages
  // The sum of one count over all kinds.
  uint64_t sum(uint64_t KindStats::*member) const;

  // Counts an accepted line, by the type that the parser used.
  void countLine(const Sentence& sentence, uint32_t tick);
  void countLeftOut(const SentenceName& name, const TalkerVerdict& why);
};

}  // namespace vgps
