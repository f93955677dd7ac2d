#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace vgps {

enum class TalkerSetting : int32_t { automatic = 0, always = 1, never = 2 };

// The parser knows the talker "GP" only. Receivers that combine systems answer as "GN", those of
// one other system as GL, GA, GB, BD or GQ. This stage gives the parser their RMC, GGA and GSA as
// if a GPS receiver had sent them, and leaves everything else alone.
class TalkerTranslation {
 public:
  // The text for the parser: `line` itself, or a copy beginning with "$GP" that lives until the
  // next call. `tick`: when the line came, milliseconds.
  std::string_view translate(std::string_view line, uint32_t tick, TalkerSetting setting);

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

  bool translateAutomatically(int talker, int kind, uint32_t tick);
  int mostCompleteTalker(uint32_t tick) const;
  std::string_view asGps(std::string_view line);

  std::array<Talker, kTalkers> talkers_{};
  bool started_ = false;
  uint32_t gpsTick_ = 0;  // of the last position sentence of GP, or of the first line of all
  std::string text_;
};

}  // namespace vgps
