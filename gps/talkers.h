#pragma once

#include <array>
#include <cstdint>

#include "gps/sentence.h"

namespace vgps {

enum class TalkerSetting : int32_t { automatic = 0, always = 1, never = 2 };

// How long a talker counts as sending a kind of sentence, and how long GP is waited for.
inline constexpr uint32_t kTalkerSilenceMs = 3000;

// Why a usable RMC, GGA, or GSA is not parsed.
enum class LeftOutReason : uint8_t {
  none,
  waiting,  // GP may still be received
  another,  // another talker's sentences of this kind are used
  turnedOff,
  unknownTalker,
};

struct TalkerVerdict {
  bool forGps = false;  // parse the sentence like one of GP
  LeftOutReason reason = LeftOutReason::none;
  uint32_t instead = 0;  // the talker that is used, if `reason` is `another`
};

// The parser only accepts the talker "GP". Receivers that combine several systems use "GN", those
// for another single system GL, GA, GB, BD, or GQ, and some mix them: GPGGA with GNRMC. This class
// decides for each kind of sentence (RMC, GGA, GSA) which talker's sentences are treated like those
// of a GPS receiver.
class TalkerTranslation {
 public:
  // Call this for every line, of any kind. `tick` is when it was received, in milliseconds.
  TalkerVerdict judge(const Sentence& sentence, uint32_t tick, TalkerSetting setting);

  // Only notes the line; `judge` does that too.
  void listen(const Sentence& sentence, uint32_t tick);

  // For a log that was surveyed: the talkers at its beginning need not be waited for.
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
    uint32_t fixTick = 0;  // of the last one with a fix
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
