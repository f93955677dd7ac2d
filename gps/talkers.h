#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

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

// The talkers that can stand in for GP, GP first, and the kinds of sentence that are chosen each on
// its own: RMC, GGA, GSA.
inline constexpr size_t kTalkers = 7;
inline constexpr size_t kTalkerKinds = 3;

// Who sends what, and when, in a log that is looked through before it is replayed: stretches of
// each talker and kind without a silence of kTalkerSilenceMs.
class TalkerTimeline {
 public:
  // Every line, of whatever kind; `tick` must not decrease.
  void listen(const Sentence& sentence, uint32_t tick);

  // Whether the talker sends the kind at `tick`, or with `withFix` sends it with a fix.
  bool sends(size_t talker, size_t kind, bool withFix, uint32_t tick) const;

 private:
  struct Stretch {
    uint32_t begin = 0;
    uint32_t end = 0;
  };
  using Stretches = std::vector<Stretch>;
  struct Heard {
    Stretches any, withFix;
  };
  static void extend(Stretches& stretches, uint32_t tick);

  std::array<std::array<Heard, kTalkerKinds>, kTalkers> heard_;
};

// The parser knows the talker "GP" only. Receivers that combine systems answer as "GN", those of
// one other system as GL, GA, GB, BD or GQ, and some mix them: GPGGA with GNRMC. This stage says
// for each kind of sentence - RMC, GGA, GSA - whose count as if a GPS receiver had sent them.
class TalkerTranslation {
 public:
  // Call this for every line, of any kind. `tick` is when it was received, in milliseconds.
  TalkerVerdict judge(const Sentence& sentence, uint32_t tick, TalkerSetting setting);

  // Of a log that was looked through before: no talker is waited for there.
  void expect(TalkerTimeline timeline) { known_ = std::move(timeline); }

  // Forgets all talkers, for a new connection.
  void reset() { *this = TalkerTranslation(); }

 private:
  struct Heard {
    bool ever = false;
    bool everWithFix = false;
    uint32_t tick = 0;
    uint32_t fixTick = 0;  // of the last one with a fix
  };
  using Talker = std::array<Heard, kTalkerKinds>;

  void begin(uint32_t tick);
  void note(size_t talker, size_t kind, bool hasFix, uint32_t tick);
  bool sends(size_t talker, size_t kind, bool withFix, uint32_t tick) const;
  int scoreOf(size_t talker, uint32_t tick) const;
  size_t speakerOf(size_t kind, uint32_t tick) const;

  std::array<Talker, kTalkers> talkers_{};
  std::array<bool, kTalkerKinds> gpsSpoke_{};
  std::optional<TalkerTimeline> known_;
  bool started_ = false;
};

}  // namespace vgps
