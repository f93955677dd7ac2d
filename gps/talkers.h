#pragma once

#include <array>
#include <cstdint>

#include "gps/sentence.h"

namespace vgps {

enum class TalkerSetting : int32_t { automatic = 0, always = 1, never = 2 };

// So long a talker counts as one that sends a kind of sentence, and so long GP is waited for.
inline constexpr uint32_t kTalkerSilenceMs = 3000;

// Why an RMC, GGA or GSA that could be of use is not parsed.
enum class LeftOutReason : uint8_t {
  none,
  waiting,  // GP may speak yet
  another,  // another talker's sentences of this kind are used
  turnedOff,
  unknownTalker,
};

struct TalkerVerdict {
  bool forGps = false;  // the parser takes the sentence as one of GP
  LeftOutReason reason = LeftOutReason::none;
  uint32_t instead = 0;  // whose sentences are used, when `reason` is `another`
};

// The parser knows the talker "GP" only. Receivers that combine systems answer as "GN", those of
// one other system as GL, GA, GB, BD or GQ, and some mix them: GPGGA with GNRMC. This stage says
// for each kind of sentence - RMC, GGA, GSA - whose count as if a GPS receiver had sent them.
class TalkerTranslation {
 public:
  // Every line, of whatever kind. `tick`: when it came, milliseconds.
  TalkerVerdict judge(const Sentence& sentence, uint32_t tick, TalkerSetting setting);

  // Notes any line; `judge` does so too.
  void listen(const Sentence& sentence, uint32_t tick);

  // Of a log that was looked through before: who speaks at its beginning need not be waited for.
  void expect(const TalkerTranslation& heard);

  // Forgets all talkers, for a new connection.
  void reset() { *this = TalkerTranslation(); }

 private:
  static constexpr size_t kTalkers = 7;  // GP first
  static constexpr size_t kKinds = 3;    // RMC, GGA, GSA

  struct Heard {
    bool ever = false;
    bool everWithFix = false;
    uint32_t tick = 0;
    uint32_t fixTick = 0;  // of the last one that had a fix
  };
  struct Talker {
    std::array<Heard, kKinds> kinds;
  };

  void begin(uint32_t tick);
  void note(size_t talker, size_t kind, bool hasFix, uint32_t tick);
  int scoreOf(size_t talker, uint32_t tick) const;
  size_t speakerOf(size_t kind, uint32_t tick) const;

  std::array<Talker, kTalkers> talkers_{};
  std::array<Talker, kTalkers> expected_{};
  std::array<bool, kKinds> gpsSpoke_{};
  bool logKnown_ = false;
  bool started_ = false;
};

}  // namespace vgps
