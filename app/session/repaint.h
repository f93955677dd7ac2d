#pragma once

#include <atomic>
#include <cstdint>

namespace vgps {

// Allows at most one repaint every 800 ms: a 10 Hz receiver must not redraw the map on every
// sentence.
class RepaintThrottle {
 public:
  // Whether a repaint is due at `tick` (milliseconds); if so, the next is due 800 ms later.
  bool due(uint32_t tick);
  // Allows the next repaint immediately, after a key press.
  void reset(uint32_t tick) { lastRepaintTick_ = tick - kIntervalMs; }

 private:
  static constexpr uint32_t kIntervalMs = 800;
  std::atomic<uint32_t> lastRepaintTick_{0};
};

}  // namespace vgps
