#pragma once

#include <chrono>
#include <thread>

namespace vgps {

// Retries an operation on a file that another program, such as a virus scanner, may be using for a
// moment: calls `done` until it returns true, at most this many times. Returns false if it never
// did.
template <class Done>
bool retry(int attempts, std::chrono::milliseconds pause, Done done) {
  for (int attempt = 1; !done(); ++attempt) {
    if (attempt >= attempts) return false;
    std::this_thread::sleep_for(pause);
  }
  return true;
}

}  // namespace vgps
