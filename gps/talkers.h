#pragma once

#include <array>
#include <cstdint>

#include "gps/sentence.h"

namespace vgps {

enum class TalkerSetting : int32_t { automatic = 0, always = 1, never = 2 };

// The parser only accepts the talker "GP". Receivers that combine several systems use "GN"; those
// for another single system use GL, GA, GB, BD, or GQ. This class decides when their RMC, GGA, and
// GSA sentences are treated like those of a GPS receiver.
class TalkerTranslation {
 public:
  // Whether to parse another talker's sentence like one of GP. `tick` is when it was received, in
  // milliseconds.
  bool standsInForGps(const Sentence& sentence, uint32_t tick, TalkerSetting setting);

  // Forgets all talkers, for a new connection.
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
  uint32_t gpsTick_ = 0;  // of GP's last position sentence or, before that, of the first line
};

}  // namespace vgps
