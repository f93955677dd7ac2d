#pragma once

#include <chrono>
#include <thread>

namespace vgps {

// What another program holds for a moment, as a virus scanner does, is soon free: asks `done` until
// it says so, at most so many times. False when it never did.
template <class Done>
bool retry(int attempts, std::chrono::milliseconds pause, Done done) {
  for (int attempt = 1; !done(); ++attempt) {
    if (attempt >= attempts) return false;
    std::this_thread::sleep_for(pause);
  }
  return true;
}

}  // namespace vgps
