#pragma once

#include <array>
#include <cstdint>

#include "gps/sentence.h"

namespace vgps {

enum class TalkerSetting : int32_t { automatic = 0, always = 1, never = 2 };

// The parser knows the talker "GP" only. Receivers that combine systems answer as "GN", those of
// one other system as GL, GA, GB, BD or GQ. This stage says when their RMC, GGA and GSA count as if
// a GPS receiver had sent them.
class TalkerTranslation {
 public:
  // Whether another talker's sentence is to be parsed as one of GP. `tick`: when it came,
  // milliseconds.
  bool standsInForGps(const Sentence& sentence, uint32_t tick, TalkerSetting setting);

  // A new connection: nothing has been heard yet.
  void reset() { *this = TalkerTranslation(); }

 private:
  struct Heard {
    bool ever = false;
    uint32_t tick = 0;
  };
  struct Talker {
    std::array<Heard, 3> kinds;  // RMC, GGA, GSA
  };

  static constexpr int kTalkers = 6;

  bool standsInNow(int talker, int kind, uint32_t tick);
  int mostCompleteTalker(uint32_t tick) const;

  std::array<Talker, kTalkers> talkers_{};
  bool started_ = false;
  uint32_t gpsTick_ = 0;  // of the last position sentence of GP, or of the first line of all
};

}  // namespace vgps
