#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "gps/fix.h"

namespace vgps {

struct LiveSource {
  std::string port;
  uint32_t speed = 9600;
  bool simulate = false;
  double seconds = 0;  // 0: until the user stops it
};

// Reads a receiver or the simulation until the user stops it or the time is up. Calls `take` with
// every complete fix and `tell` with a message when the receiver cannot be opened, is lost, or is
// back; both on this thread. Call this only once.
void readLiveFixes(const LiveSource& source, const std::function<void(const FixRecord&)>& take,
                   const std::function<void(const std::string&)>& tell);

}  // namespace vgps
