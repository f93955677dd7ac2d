#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

#include "tests/fakes/gps_world.h"

namespace vgps {

// Waits for what another thread will do; a test that fails here fails after ten seconds.
inline bool comes(const std::function<bool()>& happened) {
  for (int i = 0; i < 1000; ++i) {
    if (happened()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

// A world whose reader threads end with it.
struct LiveWorld : GpsWorld {
  LiveWorld() {
    hooks.onLine = [this](const ReceivedLine&) { ++received; };
    fix.setPort("COM3", 9600);
  }
  ~LiveWorld() { EXPECT_TRUE(fix.stopReaders(10000)); }
  std::atomic<int> received{0};
};

}  // namespace vgps
