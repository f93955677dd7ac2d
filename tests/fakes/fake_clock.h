#pragma once

#include <atomic>

#include "platform/clock.h"

namespace vgps {

// Stands still until a test moves it.
class FakeClock : public Clock {
 public:
  uint32_t tick() const override { return now; }
  DateTime utc() const override { return utcNow; }
  DateTime local() const override { return localNow; }

  std::atomic<uint32_t> now{1000};
  DateTime utcNow;
  DateTime localNow;
};

}  // namespace vgps
