#include "app/session/repaint.h"

namespace vgps {

bool RepaintThrottle::due(uint32_t tick) {
  uint32_t last = lastRepaintTick_;
  if (tick - last < kIntervalMs) return false;
  return lastRepaintTick_.compare_exchange_strong(last, tick);
}

}  // namespace vgps
